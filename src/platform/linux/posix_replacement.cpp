#include "platform/linux/posix_replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/failure.h"
#include "platform/linux/file_lock.h"
#include "platform/lock_patience.h"

namespace quorrix {
namespace {

constexpr mode_t kPrivateFile = 0600;
constexpr int kOpenFlags = O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

bool leadsTo(const Path& name, const struct stat& file) {
  struct stat named {};
  return ::lstat(name.c_str(), &named) == 0 && isSameFile(named, file);
}

bool isOwnFile(const struct stat& status) {
  return S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
}

// A program that is still writing keeps its file locked. Only the user's own files are
// tried: another user could hold a lock for ever.
void removeUnlessBeingWritten(const Path& name) {
  struct stat status {};
  if (::lstat(name.c_str(), &status) != 0) return;
  FileDescriptor leftBehind;
  if (isOwnFile(status)) leftBehind = FileDescriptor(::open(name.c_str(), kOpenFlags));
  if (leftBehind.isOpen()) {
    if (!tryToLock(leftBehind, FileLock::Exclusive, name)) return;
    // Another program has already removed it, and may be writing its own by now.
    if (!leadsTo(name, statusOf(leftBehind, name))) return;
  }
  if (::unlink(name.c_str()) != 0 && errno != ENOENT) failWithErrno(name);
}

// Before the new file is locked, another program may mistake it for one that a crash
// left, and remove it.
bool isLockedAndNamed(const FileDescriptor& file, const Path& name) {
  try {
    return tryToLock(file, FileLock::Exclusive, name) && leadsTo(name, statusOf(file, name));
  } catch (...) {
    ::unlink(name.c_str());
    throw;
  }
}

FileDescriptor createAlone(const Path& name, std::chrono::milliseconds patience) {
  FileDescriptor file;
  const bool isCreated = succeedsWithin(patience, [&] {
    file = FileDescriptor(::open(name.c_str(), kOpenFlags | O_CREAT | O_EXCL, kPrivateFile));
    if (file.isOpen()) return isLockedAndNamed(file, name);
    if (errno != EEXIST && errno != EINTR) failWithErrno(name);
    removeUnlessBeingWritten(name);
    return false;
  });
  if (!isCreated) throw Failure(failure::kPathFileAccess);
  return file;
}

}  // namespace

PosixReplacement::PosixReplacement(const Path& name, std::chrono::milliseconds patience)
    : PosixReplacement(name, createAlone(name, patience)) {}

PosixReplacement::PosixReplacement(Path name, FileDescriptor file)
    : path_(std::move(name)), status_(statusOf(file, path_)), file_(std::move(file), path_) {}

PosixReplacement::~PosixReplacement() {
  if (isNamed()) ::unlink(path_.c_str());
}

void PosixReplacement::takePlaceOf(const Path& target) {
  file_.syncBytes();
  if (!isNamed()) throw Failure(failure::kPathFileAccess);
  if (::rename(path_.c_str(), target.c_str()) != 0) failWithErrno(target);
  path_.clear();
  syncFolder(target.parent_path());
}

bool PosixReplacement::isNamed() const { return !path_.empty() && leadsTo(path_, status_); }

}  // namespace quorrix
