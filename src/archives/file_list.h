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
  // Shows the files of `start`, and none when that cannot be read. `files` must
  // outlive the list.
  FileList(FileSystem& files, const Path& start, QWidget* parent);

  // Shows a folder's files as they are now. Throws Failure; the list then stays.
  void setPath(const Path& path);

  // What the list shows, in its order and byte for byte.
  [[nodiscard]] const std::vector<Path>& names() const { return names_; }

 private:
  FileSystem& files_;
  std::vector<Path> names_;
};

}  // namespace quorrix
