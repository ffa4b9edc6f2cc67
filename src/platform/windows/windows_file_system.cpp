#include "platform/windows/windows_file_system.h"

#include <utility>

#include "platform/failure.h"
#include "platform/file_replacement.h"
#include "platform/first_line.h"
#include "platform/folder_listing.h"
#include "platform/system_errors.h"
#include "platform/windows/unique_handle.h"
#include "platform/windows/windows_random_access_file.h"

namespace quorrix {
namespace {

// Windows prevents other programs from reading and writing a locked range. Quorrix locks
// one byte at a position where no file ever has data, so the lock affects only those who
// ask for it.
constexpr DWORD kLockedByteHigh = 0x40000000;

// The path as the system interprets it: without trailing dots and blanks, and "CON" as a
// device.
Path fullPathOf(const Path& path) {
  const DWORD size = ::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring full(size, L'\0');
  const DWORD length = ::GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
  if (length == 0 || length >= size) failWithWindowsError(::GetLastError(), path);
  full.resize(length);
  return full;
}

bool isDevice(const Path& fullPath) { return fullPath.native().starts_with(L"\\\\.\\"); }

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A deleted file keeps its name until the last program that has it open, for example a
// virus scanner, closes it. Until then every access is refused. That includes reading its
// attributes, which is allowed for any other file in a folder that can be read.
bool isBeingDeleted(const Path& path) {
  if (::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return false;
  const DWORD reason = ::GetLastError();
  return reason == ERROR_ACCESS_DENIED || reason == ERROR_DELETE_PENDING;
}

// Returns an invalid handle if another program has opened the file exclusively, if the
// file is being deleted, and for CREATE_NEW if the file exists.
UniqueHandle openUnlessInUse(const Path& path, DWORD access, DWORD share, DWORD creation) {
  UniqueHandle file(::CreateFileW(path.c_str(), access, share, nullptr, creation,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  const DWORD reason = ::GetLastError();
  if (!file.isOpen() && !mayEndSoon(reason, isBeingDeleted(path)))
    failWithWindowsError(reason, path);
  return file;
}

// Refuses a pipe or a device.
void requireFile(const UniqueHandle& file) {
  if (::GetFileType(file.get()) != FILE_TYPE_DISK) throw Failure(failure::kPathFileAccess);
}

// Windows refuses to open a read-only file for writing; Wine does not refuse it to every
// user.
void requireWritable(const UniqueHandle& file, const Path& path) {
  BY_HANDLE_FILE_INFORMATION information{};
  if (!::GetFileInformationByHandle(file.get(), &information)) {
    failWithWindowsError(::GetLastError(), path);
  }
  if ((information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
    throw Failure(failure::kPathFileAccess);
  }
}

// Opens without access to the content, so that no other program's use of the file
// prevents it.
UniqueHandle openToIdentify(const Path& path, DWORD flags = 0) {
  return UniqueHandle(::CreateFileW(path.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL | flags, nullptr));
}

// Empty if the system does not report it.
std::wstring finalPathOf(const UniqueHandle& file) {
  const DWORD size = ::GetFinalPathNameByHandleW(file.get(), nullptr, 0, 0);
  std::wstring path(size, L'\0');
  const DWORD length = ::GetFinalPathNameByHandleW(file.get(), path.data(), size, 0);
  path.resize(length < size ? length : 0);
  return path;
}

bool haveOneFinalPath(const UniqueHandle& one, const UniqueHandle& other) {
  const std::wstring path = finalPathOf(one);
  const std::wstring otherPath = finalPathOf(other);
  return !path.empty() &&
         ::CompareStringOrdinal(path.c_str(), -1, otherPath.c_str(), -1, TRUE) == CSTR_EQUAL;
}

// False if it cannot be determined.
bool areOneFile(const UniqueHandle& one, const UniqueHandle& other) {
  BY_HANDLE_FILE_INFORMATION first{};
  BY_HANDLE_FILE_INFORMATION second{};
  if (!one.isOpen() || !::GetFileInformationByHandle(one.get(), &first)) return false;
  if (!other.isOpen() || !::GetFileInformationByHandle(other.get(), &second)) return false;
  const bool isEqual = first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
                       first.nFileIndexHigh == second.nFileIndexHigh &&
                       first.nFileIndexLow == second.nFileIndexLow;
  // Some network shares give files no index.
  const bool isNumbered = (first.nFileIndexHigh | first.nFileIndexLow) != 0;
  return isEqual && (isNumbered || haveOneFinalPath(one, other));
}

// Whether `path` leads to the same file as `file`. False if it cannot be determined.
bool isNamed(const UniqueHandle& file, const Path& path) {
  return areOneFile(file, openToIdentify(path));
}

// Checks only the permission, at this moment: a file that is missing or in use does not
// count as refused for that.
bool isWritingRefused(const Path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) return true;
  const UniqueHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, kShareAll, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  const DWORD reason = ::GetLastError();
  return !file.isOpen() && (reason == ERROR_ACCESS_DENIED || reason == ERROR_WRITE_PROTECT);
}

// Throws for a folder and for a read-only file, because Wine does not refuse these to
// every user. False if nothing exists at `path`.
bool isReplaceable(const Path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    const DWORD reason = ::GetLastError();
    if (reason == ERROR_FILE_NOT_FOUND) return false;
    failWithWindowsError(reason, path);
  }
  constexpr DWORD kRefused = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
  if ((attributes & kRefused) != 0) throw Failure(failure::kPathFileAccess);
  return true;
}

// The same for a path where something must exist.
void requireReplaceable(const Path& path) {
  if (!isReplaceable(path)) failWithWindowsError(ERROR_FILE_NOT_FOUND, path);
}

// Deletes the file. False while another program has it open. True if nothing exists at
// `path`.
bool isRemoved(const Path& path) {
  if (::DeleteFileW(path.c_str())) return true;
  const DWORD reason = ::GetLastError();
  if (reason == ERROR_FILE_NOT_FOUND) return true;
  if (!mayEndSoon(reason, isBeingDeleted(path))) failWithWindowsError(reason, path);
  return false;
}

// `kind` is LOCKFILE_EXCLUSIVE_LOCK, or 0 for a lock that readers share. False while
// another open file holds the lock. True if the file system has no locks: the file is
// then used without one.
bool tryToLock(const UniqueHandle& file, DWORD kind, const Path& path) {
  OVERLAPPED position{};
  position.OffsetHigh = kLockedByteHigh;
  const DWORD flags = kind | LOCKFILE_FAIL_IMMEDIATELY;
  if (::LockFileEx(file.get(), flags, 0, 1, 0, &position)) return true;
  const DWORD reason = ::GetLastError();
  if (reason == ERROR_LOCK_VIOLATION || reason == ERROR_IO_PENDING) return false;
  if (reason == ERROR_INVALID_FUNCTION || reason == ERROR_NOT_SUPPORTED) return true;
  failWithWindowsError(reason, path);
}

}  // namespace

WindowsFileSystem::WindowsFileSystem(std::chrono::milliseconds lockPatience)
    : lockPatience_(lockPatience) {
  ::SetThreadErrorMode(::GetThreadErrorMode() | SEM_FAILCRITICALERRORS, nullptr);
}

bool WindowsFileSystem::folderExists(const Path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const DWORD reason = ::GetLastError();
  if (reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND) return false;
  failWithWindowsError(reason, path);
}

bool WindowsFileSystem::fileExists(const Path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) return (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  const DWORD reason = ::GetLastError();
  if (reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND) return false;
  failWithWindowsError(reason, path);
}

Path WindowsFileSystem::makeFolder(const Path& path) {
  Path made = fullPathOf(path);
  if (isDevice(made)) throw Failure(failure::kPathFileAccess);
  if (!::CreateDirectoryW(made.c_str(), nullptr)) failWithWindowsError(::GetLastError(), made);
  return made;
}

std::unique_ptr<RandomAccessFile> WindowsFileSystem::openRandomAccess(const Path& path) {
  return std::make_unique<WindowsRandomAccessFile>(openLocked(path, Access::ReadWrite), path);
}

std::unique_ptr<RandomAccessFile> WindowsFileSystem::openForReading(const Path& path) {
  return std::make_unique<WindowsRandomAccessFile>(openLocked(path, Access::Read), path);
}

std::unique_ptr<RandomAccessFile> WindowsFileSystem::openAsPermitted(const Path& path) {
  return isWritingRefused(path) ? openForReading(path) : openRandomAccess(path);
}

bool WindowsFileSystem::isSameFile(const Path& one, const Path& other) {
  const UniqueHandle entry = openToIdentify(one, FILE_FLAG_OPEN_REPARSE_POINT);
  return areOneFile(entry, openToIdentify(other, FILE_FLAG_OPEN_REPARSE_POINT)) ||
         areOneFile(entry, openToIdentify(other));
}

void WindowsFileSystem::deleteFile(const Path& path) {
  if (!isBeingDeleted(path)) requireReplaceable(path);
  const bool deleted = succeedsWithin(lockPatience_, [&] {
    if (::DeleteFileW(path.c_str())) return true;
    const DWORD reason = ::GetLastError();
    if (!mayEndSoon(reason, isBeingDeleted(path))) failWithWindowsError(reason, path);
    return false;
  });
  if (!deleted) throw Failure::ofFileInUse();
}

// A file that is opened for this program alone can be deleted while it is open.
void WindowsFileSystem::deleteCopiedFile(const Path& path, const Path& copy) {
  if (!isBeingDeleted(path)) requireReplaceable(path);
  UniqueHandle opened;
  const bool isAlone = succeedsWithin(lockPatience_, [&] {
    opened = openUnlessInUse(path, GENERIC_READ, FILE_SHARE_DELETE, OPEN_EXISTING);
    return opened.isOpen();
  });
  if (!isAlone) throw Failure::ofFileInUse();
  const bool isCopiedOntoItself = isNamed(opened, copy);
  WindowsRandomAccessFile file(std::move(opened), path);
  if (!isCopiedOntoItself && !holdSameBytes(file, *openForReading(copy))) {
    replaceByCopyOf(file, copy);
  }
  deleteFile(path);
}

void WindowsFileSystem::copyFile(const Path& from, const Path& to) {
  UniqueHandle opened = openLocked(from, Access::Read);
  if (isNamed(opened, to)) return;
  WindowsRandomAccessFile source(std::move(opened), from);
  replaceByCopyOf(source, to);
}

void WindowsFileSystem::replaceByCopyOf(RandomAccessFile& source, const Path& to) {
  if (!isBeingDeleted(to)) static_cast<void>(isReplaceable(to));
  replace(to, [&source](RandomAccessFile& next) { writeCopy(source, next); });
}

void WindowsFileSystem::replaceByLine(const Path& path, std::string_view line) {
  requireReplaceable(path);
  replace(path, [line](RandomAccessFile& next) { writeLine(line, next); });
}

void WindowsFileSystem::replace(const Path& path,
                                const std::function<void(RandomAccessFile&)>& write) {
  const Path name = replacementNameOf(path);
  UniqueHandle file;
  const bool isOwn = succeedsWithin(lockPatience_, [&] {
    // A file of that name may be left from a crash, but another user may also have
    // created it, and it would keep that user's rights. So an existing file is removed
    // and never written to.
    if (!isRemoved(name)) return false;
    // Opened without sharing, so that two programs do not write the same replacement.
    file = openUnlessInUse(name, GENERIC_READ | GENERIC_WRITE, 0, CREATE_NEW);
    return file.isOpen();
  });
  if (!isOwn) throw Failure(failure::kPathFileAccess);
  try {
    {
      WindowsRandomAccessFile next(std::move(file), name);
      write(next);
      next.sync();
    }
    rename(name, path);
  } catch (...) {
    ::DeleteFileW(name.c_str());
    throw;
  }
}

void WindowsFileSystem::rename(const Path& from, const Path& to) {
  constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  const bool renamed = succeedsWithin(lockPatience_, [&] {
    if (::MoveFileExW(from.c_str(), to.c_str(), kFlags)) return true;
    const DWORD reason = ::GetLastError();
    // Either may mean that another program has the target open.
    const bool mayBeInUse = reason == ERROR_SHARING_VIOLATION || reason == ERROR_ACCESS_DENIED;
    if (!mayBeInUse) failWithWindowsError(reason, from);
    return false;
  });
  if (!renamed) throw Failure(failure::kPathFileAccess);
}

UniqueHandle WindowsFileSystem::openLocked(const Path& path, Access access) {
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
    return tryToLock(file, isForWriting ? LOCKFILE_EXCLUSIVE_LOCK : 0, path);
  });
  if (!locked) throw Failure::ofFileInUse();
  return file;
}

std::string WindowsFileSystem::readFirstLine(const Path& path) {
  UniqueHandle handle = openUnlessInUse(path, GENERIC_READ, kShareAll, OPEN_EXISTING);
  if (!handle.isOpen() || ::GetFileType(handle.get()) != FILE_TYPE_DISK) {
    throw Failure(failure::kPathFileAccess);
  }
  WindowsRandomAccessFile file(std::move(handle), path);
  return firstLineOf(file);
}

std::vector<Path> WindowsFileSystem::fileNames(const Path& folder) {
  return namesIn(folder, ListedKind::File);
}

std::vector<Path> WindowsFileSystem::folderNames(const Path& folder) {
  return namesIn(folder, ListedKind::Folder);
}

std::vector<Path> WindowsFileSystem::volumes() {
  std::vector<Path> roots;
  const DWORD letters = ::GetLogicalDrives();  // bit 0 is A
  for (DWORD letter = 0; letter < 26; ++letter) {
    if ((letters >> letter & 1U) == 0) continue;
    roots.emplace_back(std::wstring{static_cast<wchar_t>(L'A' + letter), L':', L'\\'});
  }
  return roots;
}

}  // namespace quorrix
