#include "platform/linux/posix_file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <utility>

#include "platform/failure.h"
#include "platform/file_replacement.h"
#include "platform/first_line.h"
#include "platform/folder_listing.h"
#include "platform/link_kind.h"
#include "platform/linux/file_lock.h"
#include "platform/linux/mounted_volumes.h"
#include "platform/linux/posix_random_access_file.h"
#include "platform/linux/posix_replacement.h"
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

// Whether `path` leads to the open file. If it no longer does, the file has been renamed
// or replaced since, and anything written to it now would be lost.
bool isNamed(const FileDescriptor& file, const Path& path) {
  const struct stat opened = statusOf(file, path);
  struct stat named {};
  return ::stat(path.c_str(), &named) == 0 && isSameFile(named, opened);
}

// Checks only the permission, at this moment: a file that is missing or locked does not
// count as refused for that.
bool isWritingRefused(const Path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  if ((status.st_mode & kAnyWriteBit) == 0) return true;
  const bool isRefused = ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0;
  return isRefused && (errno == EACCES || errno == EPERM || errno == EROFS);
}

// The path that a rename has to replace, so that a link stays a link.
Path withoutLinks(const Path& path) {
  // A link that another user made may lead to any of this user's files.
  if (linkKindOf(path) == LinkKind::AnotherUsers) return path;
  std::error_code leadsNowhere;
  const Path target = std::filesystem::canonical(path, leadsNowhere);
  return leadsNowhere ? path : target;
}

// Whether lstat() or stat() found anything. Throws if it failed for another reason than
// that nothing is there.
bool isFound(int result, const Path& path) {
  if (result == 0) return true;
  if (errno == ENOENT || errno == ENOTDIR || errno == ELOOP) return false;
  failWithErrno(path);
}

// False if openRandomAccess() would create a new file. True if something exists at
// `path`, or if opening it would fail.
bool isAnythingAt(const Path& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 || errno != ENOENT;
}

}  // namespace

bool PosixFileSystem::folderExists(const Path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) return S_ISDIR(status.st_mode);
  if (errno == ENOENT || errno == ENOTDIR) return false;
  failWithErrno(path);
}

bool PosixFileSystem::fileExists(const Path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) return !S_ISDIR(status.st_mode);
  if (errno == ENOENT || errno == ENOTDIR) return false;
  failWithErrno(path);
}

Path PosixFileSystem::makeFolder(const Path& path) {
  if (::mkdir(path.c_str(), kPrivateFolder) != 0) failWithErrno(path);
  syncFolder(path.parent_path());
  return path;
}

std::unique_ptr<RandomAccessFile> PosixFileSystem::openRandomAccess(const Path& path) {
  return std::make_unique<PosixRandomAccessFile>(openLocked(path, O_RDWR | O_CREAT), path);
}

std::unique_ptr<RandomAccessFile> PosixFileSystem::openForReading(const Path& path) {
  return std::make_unique<PosixRandomAccessFile>(openLocked(path, O_RDONLY), path);
}

std::unique_ptr<RandomAccessFile> PosixFileSystem::openAsPermitted(const Path& path) {
  return isWritingRefused(path) ? openForReading(path) : openRandomAccess(path);
}

void PosixFileSystem::deleteFile(const Path& path) {
  const FileDescriptor locked = openLocked(path, O_RDWR);
  if (::unlink(path.c_str()) != 0) failWithErrno(path);
  syncFolder(path.parent_path());
}

void PosixFileSystem::deleteCopiedFile(const Path& path, const Path& copy) {
  FileDescriptor locked = openLocked(path, O_RDWR);
  const bool isCopiedOntoItself = isNamed(locked, copy);
  PosixRandomAccessFile file(std::move(locked), path);
  if (!isCopiedOntoItself && !holdSameBytes(file, *openForReading(copy))) {
    replaceByCopyOf(file, copy);
  }
  if (::unlink(path.c_str()) != 0) failWithErrno(path);
  syncFolder(path.parent_path());
}

void PosixFileSystem::copyFile(const Path& from, const Path& to) {
  FileDescriptor opened = openLocked(from, O_RDONLY);
  if (isNamed(opened, to)) return;
  PosixRandomAccessFile source(std::move(opened), from);
  replaceByCopyOf(source, to);
}

void PosixFileSystem::replaceByCopyOf(RandomAccessFile& source, const Path& to) {
  FileDescriptor old;
  if (isAnythingAt(to)) old = openLocked(to, O_RDWR);
  PosixReplacement next(replacementNameOf(withoutLinks(to)), lockPatience_);
  writeCopy(source, next.file());
  next.takePlaceOf(withoutLinks(to));
}

bool PosixFileSystem::isSameFile(const Path& one, const Path& other) {
  struct stat entry {};
  struct stat otherEntry {};
  struct stat target {};
  if (!isFound(::lstat(one.c_str(), &entry), one)) return false;
  if (!isFound(::lstat(other.c_str(), &otherEntry), other)) return false;
  if (quorrix::isSameFile(entry, otherEntry)) return true;
  return isFound(::stat(other.c_str(), &target), other) && quorrix::isSameFile(entry, target);
}

void PosixFileSystem::replaceByLine(const Path& path, std::string_view line) {
  const FileDescriptor old = openLocked(path, O_RDWR);
  PosixReplacement next(replacementNameOf(withoutLinks(path)), lockPatience_);
  writeLine(line, next.file());
  next.takePlaceOf(withoutLinks(path));
}

void PosixFileSystem::rename(const Path& from, const Path& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) failWithErrno(from);
  syncFolder(to.parent_path());
}

FileDescriptor PosixFileSystem::openLocked(const Path& path, int flags) {
  const bool isForWriting = (flags & O_ACCMODE) == O_RDWR;
  FileDescriptor file;
  const bool locked = succeedsWithin(lockPatience_, [&] {
    if (!file.isOpen()) file = openOrFail(path, flags);
    // Root may write to every file, but a file that is marked read-only is one that the
    // user wants left alone.
    const bool isReadOnly = (statusOf(file, path).st_mode & kAnyWriteBit) == 0;
    if (isForWriting && isReadOnly) throw Failure(failure::kPathFileAccess);
    if (!tryToLock(file, isForWriting ? FileLock::Exclusive : FileLock::Shared, path)) return false;
    if (isNamed(file, path)) return true;
    file = FileDescriptor();
    return false;
  });
  if (!locked) throw Failure::ofFileInUse();
  return file;
}

std::string PosixFileSystem::readFirstLine(const Path& path) {
  FileDescriptor descriptor = openOrFail(path, O_RDONLY);
  static_cast<void>(statusOf(descriptor, path));
  PosixRandomAccessFile file(std::move(descriptor), path);
  return firstLineOf(file);
}

std::vector<Path> PosixFileSystem::fileNames(const Path& folder) {
  return namesIn(folder, ListedKind::File);
}

std::vector<Path> PosixFileSystem::folderNames(const Path& folder) {
  return namesIn(folder, ListedKind::Folder);
}

std::vector<Path> PosixFileSystem::volumes() {
  std::ifstream mounts("/proc/self/mountinfo");
  return mountedVolumes(mounts);
}

}  // namespace quorrix
