#include "platform/linux/posix_random_access_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/failure.h"
#include "platform/system_errors.h"

namespace quorrix {
namespace {

static_assert(sizeof(off_t) == 8, "build with 64-bit file offsets");

// Repeats a system call that a signal interrupted.
template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

}  // namespace

void failWithErrno(const Path& path) {
  throw Failure(failureNumberForPath(failureNumberOfErrno(errno), path));
}

void syncFolder(const Path& folder) {
  const Path opened = folder.empty() ? Path(".") : folder;
  const FileDescriptor handle(
      uninterrupted([&] { return ::open(opened.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!handle.isOpen() && errno == EACCES) return;
  if (!handle.isOpen()) failWithErrno(opened);
  // Some file systems persist folders by themselves and fail with EINVAL.
  const int result = uninterrupted([&] { return ::fsync(handle.number()); });
  if (result != 0 && errno != EINVAL) failWithErrno(opened);
}

// An empty file may be new, created by this open or by an earlier one that wrote nothing
// and did not sync.
PosixRandomAccessFile::PosixRandomAccessFile(FileDescriptor file, Path path)
    : file_(std::move(file)), path_(std::move(path)), nameMayBeUnsynced_(length() == 0) {}

std::uint64_t PosixRandomAccessFile::length() {
  struct stat status {};
  if (::fstat(file_.number(), &status) != 0) failWithErrno(path_);
  return static_cast<std::uint64_t>(status.st_size);
}

std::size_t PosixRandomAccessFile::readAt(std::uint64_t offset, std::span<char> into) {
  std::size_t done = 0;
  while (done < into.size()) {
    const ssize_t count = uninterrupted([&] {
      return ::pread(file_.number(), into.data() + done, into.size() - done,
                     static_cast<off_t>(offset + done));
    });
    if (count < 0) failWithErrno(path_);
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

void PosixRandomAccessFile::writeAt(std::uint64_t offset, std::span<const char> bytes) {
  const std::uint64_t oldLength = length();
  const std::vector<char> overwritten = bytesAt(offset, bytes.size(), oldLength);
  const WriteResult result = writeSpan(offset, bytes);
  if (result.reason == 0) return;
  // Only what was changed, so that a write that failed at once leaves the file untouched.
  const std::size_t changed = std::min(result.done, overwritten.size());
  static_cast<void>(writeSpan(offset, std::span(overwritten).first(changed)));
  if (offset + result.done > oldLength) shortenTo(oldLength);
  errno = result.reason;
  failWithErrno(path_);
}

// At most `count` bytes, up to the old end of the file. Empty if they cannot be read.
std::vector<char> PosixRandomAccessFile::bytesAt(std::uint64_t offset, std::size_t count,
                                                 std::uint64_t end) {
  if (offset >= end) return {};
  std::vector<char> bytes(static_cast<std::size_t>(std::min<std::uint64_t>(count, end - offset)));
  const ssize_t got = uninterrupted([&] {
    return ::pread(file_.number(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
  });
  bytes.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
  return bytes;
}

WriteResult PosixRandomAccessFile::writeSpan(std::uint64_t offset, std::span<const char> bytes) {
  return writeAll(bytes, [&](std::span<const char> rest, std::size_t done) {
    return ::pwrite(file_.number(), rest.data(), rest.size(), static_cast<off_t>(offset + done));
  });
}

// If this fails, too, the error of the write is reported.
void PosixRandomAccessFile::shortenTo(std::uint64_t length) {
  [[maybe_unused]] const int result = ::ftruncate(file_.number(), static_cast<off_t>(length));
}

void PosixRandomAccessFile::sync() {
  syncBytes();
  if (!nameMayBeUnsynced_) return;
  syncFolder(path_.parent_path());
  nameMayBeUnsynced_ = false;
}

void PosixRandomAccessFile::syncBytes() {
  if (uninterrupted([&] { return ::fdatasync(file_.number()); }) != 0) failWithErrno(path_);
}

}  // namespace quorrix
