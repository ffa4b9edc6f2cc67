// An open regular file. PosixFileSystem creates it and takes the lock; closing the
// descriptor releases the lock.
#pragma once

#include <vector>

#include "platform/file_system.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/write_all.h"

namespace quorrix {

class PosixRandomAccessFile final : public RandomAccessFile {
 public:
  // `path` is the name under which `file` was opened. If the file may be new, sync() also
  // syncs the folder that contains it.
  PosixRandomAccessFile(FileDescriptor file, Path path);

  [[nodiscard]] std::uint64_t length() override;
  [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<char> into) override;

  // If it fails half-way, it restores the old bytes and the old length: half a record
  // would count as a record.
  void writeAt(std::uint64_t offset, std::span<const char> bytes) override;

  void sync() override;

  // Syncs the content but not the name, for a file that is going to be renamed.
  void syncBytes();

 private:
  [[nodiscard]] std::vector<char> bytesAt(std::uint64_t offset, std::size_t count,
                                          std::uint64_t end);
  [[nodiscard]] WriteResult writeSpan(std::uint64_t offset, std::span<const char> bytes);
  void shortenTo(std::uint64_t length);

  FileDescriptor file_;
  Path path_;
  bool nameMayBeUnsynced_;
};

// Returns once the names in `folder` have reached the disk. A folder that may be written
// but not read cannot be synced; that is not a failure.
void syncFolder(const Path& folder);

// Throws the Failure for the current errno.
[[noreturn]] void failWithErrno(const Path& path);

}  // namespace quorrix
