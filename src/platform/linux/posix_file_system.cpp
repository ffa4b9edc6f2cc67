#include "platform/linux/posix_file_system.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/failure.h"
#include "platform/first_line.h"
#include "platform/linux/posix_random_access_file.h"
#include "platform/system_errors.h"

namespace quorrix {
namespace {

constexpr mode_t kPrivateFolder = 0700;
constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kAnyWriteBit = 0222;

// Without O_NONBLOCK, opening a pipe would wait for its other end; on a regular
// file the flag does nothing.
constexpr int kOpenFlags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

FileDescriptor openOrFail(const Path& path, int flags) {
  int number = ::open(path.c_str(), flags | kOpenFlags, kPrivateFile);
  while (number < 0 && errno == EINTR) {
    number = ::open(path.c_str(), flags | kOpenFlags, kPrivateFile);
  }
  if (number < 0) failWithErrno(path);
  return FileDescriptor(number);
}

struct stat statusOf(const FileDescriptor& file, const Path& path) {
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) failWithErrno(path);
  if (!S_ISREG(status.st_mode)) throw Failure(failure::kPathFileAccess);
  return status;
}

// False while another open file holds the lock. A file system that has no locks
// is used without them rather than not at all.
bool tryToLock(const FileDescriptor& file, const Path& path) {
  if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) return true;
  if (errno == EWOULDBLOCK || errno == EINTR) return false;
  if (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS) return true;
  failWithErrno(path);
}

// False when the file was renamed away or replaced since it was opened: what is
// written to it now would be lost.
bool isStillNamed(const FileDescriptor& file, const Path& path) {
  const struct stat opened = statusOf(file, path);
  struct stat named {};
  return ::stat(path.c_str(), &named) == 0 && named.st_dev == opened.st_dev &&
         named.st_ino == opened.st_ino;
}

}  // namespace

bool PosixFileSystem::folderExists(const Path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) return S_ISDIR(status.st_mode);
  if (errno == ENOENT || errno == ENOTDIR) return false;
  failWithErrno(path);
}

void PosixFileSystem::makeFolder(const Path& path) {
  if (::mkdir(path.c_str(), kPrivateFolder) != 0) failWithErrno(path);
  syncFolder(path.parent_path());
}

std::unique_ptr<RandomAccessFile> PosixFileSystem::openRandomAccess(const Path& path) {
  return std::make_unique<PosixRandomAccessFile>(openLocked(path, O_RDWR | O_CREAT), path);
}

std::unique_ptr<RandomAccessFile> PosixFileSystem::openForReading(const Path& path) {
  return std::make_unique<PosixRandomAccessFile>(openLocked(path, O_RDONLY), path);
}

void PosixFileSystem::deleteFile(const Path& path) {
  const FileDescriptor locked = openLocked(path, O_RDWR);
  if (::unlink(path.c_str()) != 0) failWithErrno(path);
  syncFolder(path.parent_path());
}

FileDescriptor PosixFileSystem::openLocked(const Path& path, int flags) {
  const bool isForWriting = (flags & O_ACCMODE) == O_RDWR;
  FileDescriptor file;
  const bool locked = succeedsWithin(lockPatience_, [&] {
    if (!file.isOpen()) file = openOrFail(path, flags);
    // Root may write to everything, and still a file that is marked read-only
    // is one that the user wants left alone.
    const bool isReadOnly = (statusOf(file, path).st_mode & kAnyWriteBit) == 0;
    if (isForWriting && isReadOnly) throw Failure(failure::kPathFileAccess);
    if (!tryToLock(file, path)) return false;
    if (isStillNamed(file, path)) return true;
    file = FileDescriptor();
    return false;
  });
  if (!locked) throw Failure(failure::kPathFileAccess);
  return file;
}

std::string PosixFileSystem::readFirstLine(const Path& path) {
  FileDescriptor descriptor = openOrFail(path, O_RDONLY);
  static_cast<void>(statusOf(descriptor, path));
  PosixRandomAccessFile file(std::move(descriptor), path);
  return firstLineOf(file);
}

}  // namespace quorrix
