// The new content of a file, under its own name until it is complete and on the disk.
// PosixFileSystem creates it. The file stays locked while the object exists, so that two
// programs do not write the same replacement.
#pragma once

#include <sys/stat.h>

#include <chrono>

#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_random_access_file.h"

namespace quorrix {

class PosixReplacement final {
 public:
  // Creates an empty file, private to the user, under `name`. An existing file of that
  // name is removed first and never written to: a crash may have left it, but another
  // user may also have created it. Throws kPathFileAccess if it cannot be removed, and if
  // another program keeps writing this replacement for longer than `patience`.
  PosixReplacement(const Path& name, std::chrono::milliseconds patience);

  // Removes the file unless it has taken another's place.
  ~PosixReplacement();
  PosixReplacement(const PosixReplacement&) = delete;
  PosixReplacement& operator=(const PosixReplacement&) = delete;

  [[nodiscard]] RandomAccessFile& file() { return file_; }

  // Returns once the file has reached the disk under its new name. Throws kPathFileAccess
  // if something else has taken the replacement's own name.
  void takePlaceOf(const Path& target);

 private:
  PosixReplacement(Path name, FileDescriptor file);

  [[nodiscard]] bool isNamed() const;

  Path path_;  // empty once there is nothing left to remove
  struct stat status_;
  PosixRandomAccessFile file_;
};

}  // namespace quorrix
