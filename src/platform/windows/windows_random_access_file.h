// An open regular file. WindowsFileSystem creates it and takes the lock; closing the
// handle releases the lock.
#pragma once

#include "platform/file_system.h"
#include "platform/windows/unique_handle.h"

namespace quorrix {

class WindowsRandomAccessFile final : public RandomAccessFile {
 public:
  WindowsRandomAccessFile(UniqueHandle file, Path path);

  [[nodiscard]] std::uint64_t length() override;
  [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<char> into) override;

  // If it fails, it truncates the file to its old length: half a record at the end would
  // count as a record.
  void writeAt(std::uint64_t offset, std::span<const char> bytes) override;

  void sync() override;

 private:
  void shortenTo(std::uint64_t length);

  UniqueHandle file_;
  Path path_;
};

// Throws the Failure for `code`, a GetLastError() value.
[[noreturn]] void failWithWindowsError(unsigned long code, const Path& path);

}  // namespace quorrix
