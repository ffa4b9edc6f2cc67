// A list of the files of a folder, all of them, in the order of their names. To be
// looked at: choosing one does nothing.
#pragma once

#include <QListWidget>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

class FileList final : public QListWidget {
  Q_OBJECT

 public:
  // Empty until the first setPath(). `files` must outlive the list.
  FileList(FileSystem& files, QWidget* parent);

  [[nodiscard]] const Path& path() const { return path_; }

  // Shows a folder's files as they are now. Throws Failure; the list then stays.
  void setPath(const Path& path);

  // What the list shows, in its order and byte for byte.
  [[nodiscard]] const std::vector<Path>& names() const { return names_; }

 private:
  FileSystem& files_;
  Path path_;
  std::vector<Path> names_;
};

}  // namespace quorrix
