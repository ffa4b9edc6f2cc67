// The next content of a file, under a name of its own until it is whole and on the
// disk. PosixFileSystem makes it; while it is there, its file is locked, so that two
// programs do not write the same replacement.
#pragma once

#include <sys/stat.h>

#include <chrono>

#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_random_access_file.h"

namespace quorrix {

class PosixReplacement final {
 public:
  // Creates an empty file, private to the user, under `name`. Whatever has that name
  // is removed first and never written to: a crash may have left it, but another user
  // may also have put it there. Throws kPathFileAccess when it cannot be removed, and when
  // another program goes on writing this replacement for longer than `patience`.
  PosixReplacement(const Path& name, std::chrono::milliseconds patience);

  // Unless it has taken another's place, the file is gone afterwards.
  ~PosixReplacement();
  PosixReplacement(const PosixReplacement&) = delete;
  PosixReplacement& operator=(const PosixReplacement&) = delete;

  [[nodiscard]] RandomAccessFile& file() { return file_; }

  // Returns once the disk has the file under its new name. Throws kPathFileAccess
  // if something else has taken the replacement's own name.
  void takePlaceOf(const Path& target);

 private:
  PosixReplacement(Path name, FileDescriptor file);

  [[nodiscard]] bool isNamed() const;

  Path path_;  // empty when there is nothing to remove any more
  struct stat status_;
  PosixRandomAccessFile file_;
};

}  // namespace quorrix
