// The file system operations that Quorrix needs. Every method throws a Failure with a
// number from system_errors.h. Tests substitute a wrapper that fails at a call of their
// choice. The real ones are linux/posix_file_system.h and windows/windows_file_system.h.
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

// A file opened for positioned reading and writing. The object holds an advisory lock on
// the file from open to destruction, so that two running programs never interleave. The
// destructor closes the file without syncing. A file may be open for reading several
// times at once; while it is open for writing, it is not open anywhere else.
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

  // False if nothing exists at `path`, or something that is not a folder.
  [[nodiscard]] virtual bool folderExists(const Path& path) = 0;

  // False if nothing exists at `path`, and for a folder.
  [[nodiscard]] virtual bool fileExists(const Path& path) = 0;

  // Creates one level, private to the user. Throws kPathFileAccess if `path` already
  // exists, and for a name that the system reserves for a device. Returns the folder's
  // path, which on Windows is not always `path`: the system removes trailing dots and
  // blanks.
  virtual Path makeFolder(const Path& path) = 0;

  // Opens for reading and writing, and creates a missing file, private to the user.
  // Throws kPathFileAccess for a folder, for a read-only file (also if the user is root),
  // and for a file that another program keeps locked for longer than kLockPatience.
  // isFileInUse() is true only for the Failure of a locked file.
  [[nodiscard]] virtual std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) = 0;

  // Opens an existing file for reading; a write through it fails with kPathFileAccess.
  // Throws kFileNotFound or kPathNotFound if it is missing, otherwise as
  // openRandomAccess(). If the file system has no locks for readers, the file is read
  // without one.
  [[nodiscard]] virtual std::unique_ptr<RandomAccessFile> openForReading(const Path& path) = 0;

  // Works like openForReading() for a file that the user may not write to, such as a
  // read-only one, and like openRandomAccess() for any other.
  [[nodiscard]] virtual std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) = 0;

  // Deletes a file; if `path` is a link, deletes the link itself and not its target.
  // Throws kFileNotFound if the file is missing, kPathNotFound if its folder is missing
  // too, and kPathFileAccess for a folder and for a file that openRandomAccess() would
  // refuse, such as a read-only one.
  virtual void deleteFile(const Path& path) = 0;

  // Deletes a file after it was copied to `copy`. If another program has written to the
  // file since, it is first copied again, so that nothing is lost. Throws as deleteFile()
  // and copyFile() do.
  virtual void deleteCopiedFile(const Path& path, const Path& copy) = 0;

  // Whether deleting `one` would delete the file that `other` leads to. The two paths may
  // differ in spelling and pass through links to folders. False if `one` is itself a link
  // that `other` does not name, and if either is missing. On Linux, throws if either cannot
  // be looked at; on Windows, that counts as missing.
  [[nodiscard]] virtual bool isSameFile(const Path& one, const Path& other) = 0;

  // Makes `to` a byte-for-byte copy of `from`, private to the user. Returns once the copy
  // has reached the disk. After a failure or a crash, `to` is either the complete old
  // file or the complete new one. No existing file is written to. Copying a file onto
  // itself, under any name, changes nothing. Throws kFileNotFound or kPathNotFound if
  // `from` is missing, kPathNotFound if the folder of `to` is missing, and
  // kPathFileAccess for a folder and for a `to` that openRandomAccess() would refuse.
  virtual void copyFile(const Path& from, const Path& to) = 0;

  // Replaces the whole content of the file by `line` and CR LF. As with copyFile(), the
  // new content has reached the disk on return, and after a failure the file is complete,
  // either old or new. Throws kFileNotFound or kPathNotFound if the file is missing, and
  // kPathFileAccess as copyFile() does.
  virtual void replaceByLine(const Path& path, std::string_view line) = 0;

  // Gives the file or folder `from` the path `to`, in the same file system. An existing file
  // `to` is replaced. Returns once the new name has reached the disk. Throws kPathFileAccess
  // if `to` is a folder that holds anything, and on Windows if it is any folder.
  virtual void rename(const Path& from, const Path& to) = 0;

  // The bytes before the first line end (LF, CR or both); empty for an empty file.
  [[nodiscard]] virtual std::string readFirstLine(const Path& path) = 0;

  // The names of the folder's entries, without the folder's own path, sorted by their
  // bytes (on Windows by their UTF-16 code units): fileNames() returns everything that is
  // not a folder, folderNames() the folders. A link to a folder counts as a folder.
  // Throws kPathNotFound for a missing folder, and kPathFileAccess for a path that is not
  // a folder and for a folder that may not be read.
  [[nodiscard]] virtual std::vector<Path> fileNames(const Path& folder) = 0;
  [[nodiscard]] virtual std::vector<Path> folderNames(const Path& folder) = 0;

  // The root folders of the disks, USB sticks and network shares that a user can choose
  // from now, whether or not they can be read.
  [[nodiscard]] virtual std::vector<Path> volumes() = 0;
};

}  // namespace quorrix
