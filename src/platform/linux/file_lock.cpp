#include "platform/linux/file_lock.h"

#include <sys/file.h>

#include <cerrno>

#include "platform/failure.h"
#include "platform/linux/posix_random_access_file.h"

namespace quorrix {

bool isHeldElsewhere(int code) noexcept { return code == EWOULDBLOCK || code == EINTR; }

bool isLockUnavailable(int code, FileLock lock) noexcept {
  if (code == ENOLCK || code == EOPNOTSUPP || code == ENOSYS) return true;
  return lock == FileLock::Shared && (code == EBADF || code == EINVAL);
}

bool tryToLock(const FileDescriptor& file, FileLock lock, const Path& path) {
  const int kind = lock == FileLock::Shared ? LOCK_SH : LOCK_EX;
  if (::flock(file.number(), kind | LOCK_NB) == 0) return true;
  if (isHeldElsewhere(errno)) return false;
  if (isLockUnavailable(errno, lock)) return true;
  failWithErrno(path);
}

struct stat statusOf(const FileDescriptor& file, const Path& path) {
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) failWithErrno(path);
  if (!S_ISREG(status.st_mode)) throw Failure(failure::kPathFileAccess);
  return status;
}

bool isSameFile(const struct stat& one, const struct stat& other) noexcept {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace quorrix
