// The next content of a file, under a name of its own until it is whole and on the
// disk. PosixFileSystem makes it; while it is there, its file is locked, so that two
// programs do not write the same replacement.
#pragma once

#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_random_access_file.h"

namespace quorrix {

class PosixReplacement final {
 public:
  // Empties the file, and makes it private to the user. `path` is its name.
  PosixReplacement(FileDescriptor file, Path path);

  // Unless it has taken another's place, the file is gone afterwards.
  ~PosixReplacement();
  PosixReplacement(const PosixReplacement&) = delete;
  PosixReplacement& operator=(const PosixReplacement&) = delete;

  [[nodiscard]] RandomAccessFile& file() { return file_; }

  // Returns once the disk has the file under its new name.
  void takePlaceOf(const Path& target);

 private:
  Path path_;  // empty when there is nothing to remove any more
  PosixRandomAccessFile file_;
};

}  // namespace quorrix
