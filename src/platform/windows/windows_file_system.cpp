#include "platform/windows/windows_file_system.h"

#include <utility>

#include "platform/failure.h"
#include "platform/first_line.h"
#include "platform/system_errors.h"
#include "platform/windows/unique_handle.h"
#include "platform/windows/windows_random_access_file.h"

namespace quorrix {
namespace {

// Windows keeps other programs from reading and writing what is locked. The one
// byte that Quorrix locks lies where no file ever has data, so that the lock binds
// only those who ask for it.
constexpr DWORD kLockedByteHigh = 0x40000000;

// An invalid handle when another program has opened the file for itself alone.
UniqueHandle openUnlessInUse(const Path& path, DWORD access, DWORD share, DWORD creation) {
  UniqueHandle file(::CreateFileW(path.c_str(), access, share, nullptr, creation,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  const DWORD reason = ::GetLastError();
  if (!file.isOpen() && reason != ERROR_SHARING_VIOLATION) failWithWindowsError(reason, path);
  return file;
}

// Not a pipe or a device.
void requireFile(const UniqueHandle& file) {
  if (::GetFileType(file.get()) != FILE_TYPE_DISK) throw Failure(failure::kPathFileAccess);
}

// The system refuses a read-only file by itself, but not to everyone under Wine.
void requireWritable(const UniqueHandle& file, const Path& path) {
  BY_HANDLE_FILE_INFORMATION information{};
  if (!::GetFileInformationByHandle(file.get(), &information)) {
    failWithWindowsError(::GetLastError(), path);
  }
  if ((information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
    throw Failure(failure::kPathFileAccess);
  }
}

// False while another open file holds the lock. A file system that has no locks
// is used without them rather than not at all.
bool tryToLock(const UniqueHandle& file, const Path& path) {
  OVERLAPPED position{};
  position.OffsetHigh = kLockedByteHigh;
  constexpr DWORD kFlags = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  if (::LockFileEx(file.get(), kFlags, 0, 1, 0, &position)) return true;
  const DWORD reason = ::GetLastError();
  if (reason == ERROR_LOCK_VIOLATION || reason == ERROR_IO_PENDING) return false;
  if (reason == ERROR_INVALID_FUNCTION || reason == ERROR_NOT_SUPPORTED) return true;
  failWithWindowsError(reason, path);
}

}  // namespace

bool WindowsFileSystem::folderExists(const Path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const DWORD reason = ::GetLastError();
  if (reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND) return false;
  failWithWindowsError(reason, path);
}

void WindowsFileSystem::makeFolder(const Path& path) {
  if (!::CreateDirectoryW(path.c_str(), nullptr)) failWithWindowsError(::GetLastError(), path);
}

std::unique_ptr<RandomAccessFile> WindowsFileSystem::openRandomAccess(const Path& path) {
  return openLocked(path, Access::ReadWrite);
}

std::unique_ptr<RandomAccessFile> WindowsFileSystem::openForReading(const Path& path) {
  return openLocked(path, Access::Read);
}

void WindowsFileSystem::deleteFile(const Path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) failWithWindowsError(::GetLastError(), path);
  // As for opening: the system's own refusal does not reach everyone under Wine.
  constexpr DWORD kRefused = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
  if ((attributes & kRefused) != 0) throw Failure(failure::kPathFileAccess);
  const bool deleted = succeedsWithin(lockPatience_, [&] {
    if (::DeleteFileW(path.c_str())) return true;
    const DWORD reason = ::GetLastError();
    if (reason != ERROR_SHARING_VIOLATION) failWithWindowsError(reason, path);
    return false;
  });
  if (!deleted) throw Failure(failure::kPathFileAccess);
}

std::unique_ptr<RandomAccessFile> WindowsFileSystem::openLocked(const Path& path, Access access) {
  const bool isForWriting = access == Access::ReadWrite;
  UniqueHandle file;
  const bool locked = succeedsWithin(lockPatience_, [&] {
    if (!file.isOpen()) {
      file = openUnlessInUse(path, isForWriting ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ,
                             FILE_SHARE_READ | FILE_SHARE_WRITE,
                             isForWriting ? OPEN_ALWAYS : OPEN_EXISTING);
      if (!file.isOpen()) return false;
      requireFile(file);
      if (isForWriting) requireWritable(file, path);
    }
    return tryToLock(file, path);
  });
  if (!locked) throw Failure(failure::kPathFileAccess);
  return std::make_unique<WindowsRandomAccessFile>(std::move(file), path);
}

std::string WindowsFileSystem::readFirstLine(const Path& path) {
  UniqueHandle handle = openUnlessInUse(
      path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
  if (!handle.isOpen() || ::GetFileType(handle.get()) != FILE_TYPE_DISK) {
    throw Failure(failure::kPathFileAccess);
  }
  WindowsRandomAccessFile file(std::move(handle), path);
  return firstLineOf(file);
}

}  // namespace quorrix
