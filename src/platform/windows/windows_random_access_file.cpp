#include "platform/windows/windows_random_access_file.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"
#include "platform/system_errors.h"

namespace quorrix {
namespace {

// One call's count has 32 bits.
constexpr std::size_t kLongestTransfer = std::size_t{1} << 30;

DWORD transferSize(std::size_t bytesLeft) {
  return static_cast<DWORD>(std::min(bytesLeft, kLongestTransfer));
}

OVERLAPPED positionAt(std::uint64_t offset) {
  OVERLAPPED position{};
  position.Offset = static_cast<DWORD>(offset & 0xFFFFFFFFU);
  position.OffsetHigh = static_cast<DWORD>(offset >> 32U);
  return position;
}

}  // namespace

void failWithWindowsError(unsigned long code, const Path& path) {
  throw Failure(failureNumberForPath(failureNumberOfWindowsError(code), path));
}

WindowsRandomAccessFile::WindowsRandomAccessFile(UniqueHandle file, Path path)
    : file_(std::move(file)), path_(std::move(path)) {}

std::uint64_t WindowsRandomAccessFile::length() {
  LARGE_INTEGER size{};
  if (!::GetFileSizeEx(file_.get(), &size)) failWithWindowsError(::GetLastError(), path_);
  return static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t WindowsRandomAccessFile::readAt(std::uint64_t offset, std::span<char> into) {
  std::size_t done = 0;
  while (done < into.size()) {
    OVERLAPPED position = positionAt(offset + done);
    DWORD count = 0;
    if (!::ReadFile(file_.get(), into.data() + done, transferSize(into.size() - done), &count,
                    &position)) {
      const DWORD reason = ::GetLastError();
      if (reason == ERROR_HANDLE_EOF) break;
      failWithWindowsError(reason, path_);
    }
    if (count == 0) break;
    done += count;
  }
  return done;
}

void WindowsRandomAccessFile::writeAt(std::uint64_t offset, std::span<const char> bytes) {
  const std::uint64_t oldLength = length();
  std::size_t done = 0;
  while (done < bytes.size()) {
    OVERLAPPED position = positionAt(offset + done);
    DWORD count = 0;
    const bool written = ::WriteFile(file_.get(), bytes.data() + done,
                                     transferSize(bytes.size() - done), &count, &position) != 0;
    if (!written || count == 0) {
      const DWORD reason = written ? ERROR_DISK_FULL : ::GetLastError();
      shortenTo(oldLength);
      failWithWindowsError(reason, path_);
    }
    done += count;
  }
}

// Undoes a write that failed half-way. If this fails too, the write's own error is
// reported.
void WindowsRandomAccessFile::shortenTo(std::uint64_t length) {
  LARGE_INTEGER end{};
  end.QuadPart = static_cast<LONGLONG>(length);
  if (::SetFilePointerEx(file_.get(), end, nullptr, FILE_BEGIN)) ::SetEndOfFile(file_.get());
}

void WindowsRandomAccessFile::sync() {
  if (!::FlushFileBuffers(file_.get())) failWithWindowsError(::GetLastError(), path_);
}

}  // namespace quorrix
