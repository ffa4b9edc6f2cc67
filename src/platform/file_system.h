// What Quorrix asks of the file system. Every method throws Failure with the
// number from system_errors.h; a test replaces the whole by a wrapper that fails
// at a call of its choice. The real one is linux/posix_file_system.h or
// windows/windows_file_system.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorrix {

using Path = std::filesystem::path;

// A file opened for positioned reading and writing. The object holds an
// advisory lock on the file from open to destruction, so that two running
// programs never interleave; the destructor closes without syncing. Several may
// have a file open for reading at once; one that is open for writing is open alone.
class RandomAccessFile {
 public:
  virtual ~RandomAccessFile() = default;

  // In bytes.
  [[nodiscard]] virtual std::uint64_t length() = 0;

  // Reads from byte `offset` (counted from 0) until `into` is full or the file
  // ends; returns the number of bytes read.
  [[nodiscard]] virtual std::size_t readAt(std::uint64_t offset, std::span<char> into) = 0;

  // Writes all of `bytes` at `offset`; a gap after the old end reads as NULs.
  virtual void writeAt(std::uint64_t offset, std::span<const char> bytes) = 0;

  // Returns once everything written has reached the disk.
  virtual void sync() = 0;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // False when there is nothing at `path` or something that is no folder.
  [[nodiscard]] virtual bool folderExists(const Path& path) = 0;

  // False when there is nothing at `path`, and for a folder.
  [[nodiscard]] virtual bool fileExists(const Path& path) = 0;

  // Makes one level, private to the user. Throws kPathFileAccess if `path` exists already,
  // and for a name that the system keeps for a device. Returns the folder's path, which on
  // Windows is not always `path`: the system removes dots and blanks at its end.
  virtual Path makeFolder(const Path& path) = 0;

  // Opens for reading and writing, and creates a missing file, private to the user. Throws
  // kPathFileAccess for a folder, for a read-only file (also if the user is root), and for a
  // file that another program keeps locked for longer than kLockPatience. Only the Failure
  // of a locked file isFileInUse().
  [[nodiscard]] virtual std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) = 0;

  // Opens an existing file for reading; a write through it fails with kPathFileAccess.
  // Throws kFileNotFound or kPathNotFound if it is missing, else as openRandomAccess(). If
  // the file system has no locks for readers, the file is read without one.
  [[nodiscard]] virtual std::unique_ptr<RandomAccessFile> openForReading(const Path& path) = 0;

  // Works like openForReading() for a file that the user may not write to, such as a
  // read-only one, and like openRandomAccess() for any other.
  [[nodiscard]] virtual std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) = 0;

  // Deletes a file; of a link the link itself, not what it leads to. Throws kFileNotFound if
  // the file is missing, kPathNotFound if its folder is missing too, and kPathFileAccess for
  // a folder and for a file that openRandomAccess() would refuse, such as a read-only one.
  virtual void deleteFile(const Path& path) = 0;

  // Whether deleting `one` would delete the file that `other` leads to: the two may
  // differ in spelling and pass through links to folders. False when `one` is itself
  // a link that `other` does not name, and when either is missing.
  [[nodiscard]] virtual bool isSameFile(const Path& one, const Path& other) = 0;

  // Makes `to` the same as `from`, byte for byte, and private to the user. Returns
  // once that has reached the disk; after a failure, and after a crash, `to` is the
  // old file or the new one, whole. No file that was there already is written to.
  // A file that is copied onto itself, by whatever name, stays as it is. Throws
  // kFileNotFound or kPathNotFound if `from` is missing, kPathNotFound if the folder of `to`
  // is, and kPathFileAccess for a folder and for a `to` that openRandomAccess() would refuse.
  virtual void copyFile(const Path& from, const Path& to) = 0;

  // Makes `line`, ended by CR LF, all that the file holds: on the disk, and after a
  // failure whole, as copyFile() does. Throws kFileNotFound or kPathNotFound if the file is
  // missing, and kPathFileAccess as copyFile() does.
  virtual void replaceByLine(const Path& path, std::string_view line) = 0;

  // The bytes before the first line end (LF, CR or both); empty for an empty file.
  [[nodiscard]] virtual std::string readFirstLine(const Path& path) = 0;

  // The names of all that the folder holds, without the folder's own path, in the
  // order of their bytes: what is no folder, and the folders. A link to a folder counts as
  // one. Throws kPathNotFound for a missing folder, and kPathFileAccess for a path that is
  // not a folder and for a folder that may not be read.
  [[nodiscard]] virtual std::vector<Path> fileNames(const Path& folder) = 0;
  [[nodiscard]] virtual std::vector<Path> folderNames(const Path& folder) = 0;

  // The root folders of the disks, sticks and network shares that a user can choose
  // from now, whether or not they can be read.
  [[nodiscard]] virtual std::vector<Path> volumes() = 0;
};

}  // namespace quorrix
