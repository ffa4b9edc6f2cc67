// A list of all files of a folder, in the order of their names. It is for viewing only:
// choosing a file does nothing.
#pragma once

#include <QListWidget>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

class FileList final : public QListWidget {
  Q_OBJECT

 public:
  // Shows the files of `start`, or none if it cannot be read. `files` must outlive the
  // list.
  FileList(FileSystem& files, const Path& start, QWidget* parent);

  // Shows a folder's files as they are now. Throws Failure; the list is then unchanged.
  void setPath(const Path& path);

  // The names that the list shows, in the same order and byte for byte.
  [[nodiscard]] const std::vector<Path>& names() const { return names_; }

 private:
  FileSystem& files_;
  std::vector<Path> names_;
};

}  // namespace quorrix
