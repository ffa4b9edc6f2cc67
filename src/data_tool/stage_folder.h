// A new folder, in which output is made before it gets its final name. Nobody else can write to
// it: a new file of a known name could be a link that another user has put there.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

class StageFolder {
 public:
  // Throws Problem with the path of the folder around `path`.
  StageFolder(FileSystem& files, const Path& path);

  // Removes what is still at path().
  ~StageFolder();

  StageFolder(const StageFolder&) = delete;
  StageFolder& operator=(const StageFolder&) = delete;

  [[nodiscard]] const Path& path() const { return path_; }

 private:
  Path path_;
};

// Throws Problem with `reason` if there is a file or folder at `path`.
void requireNothingAt(FileSystem& files, const Path& path, const char* reason);

}  // namespace quorrix
