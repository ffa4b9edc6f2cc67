// An open regular file. PosixFileSystem makes it, and takes the lock that closing
// the descriptor gives back.
#pragma once

#include "platform/file_system.h"
#include "platform/linux/file_descriptor.h"

namespace quorrix {

class PosixRandomAccessFile final : public RandomAccessFile {
 public:
  // `path` is the name that `file` was opened by: the folder it is in is synced
  // together with a file that may be new.
  PosixRandomAccessFile(FileDescriptor file, Path path);

  [[nodiscard]] std::uint64_t length() override;
  [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<char> into) override;

  // When it fails, the file is no longer than before: half a record at the end
  // would count as a record.
  void writeAt(std::uint64_t offset, std::span<const char> bytes) override;

  void sync() override;

  // Without the name, for a file that is going to be renamed.
  void syncBytes();

 private:
  void shortenTo(std::uint64_t length);

  FileDescriptor file_;
  Path path_;
  bool nameMayBeUnsynced_;
};

// Returns once the names in `folder` have reached the disk. A folder that may be
// written but not read cannot be synced, which is not a failure.
void syncFolder(const Path& folder);

// Throws the Failure of the present errno.
[[noreturn]] void failWithErrno(const Path& path);

}  // namespace quorrix
