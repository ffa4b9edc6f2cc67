// The file system of Linux. Locks are flock locks: advisory, and released by the kernel
// when a program crashes.
#pragma once

#include <chrono>

#include "platform/file_system.h"
#include "platform/linux/file_descriptor.h"
#include "platform/lock_patience.h"

namespace quorrix {

class PosixFileSystem final : public FileSystem {
 public:
  // `lockPatience` is how long an open waits for another program's lock.
  explicit PosixFileSystem(std::chrono::milliseconds lockPatience = kLockPatience)
      : lockPatience_(lockPatience) {}

  // Fails when it cannot tell, for example inside a folder that may not be entered.
  [[nodiscard]] bool folderExists(const Path& path) override;
  [[nodiscard]] bool fileExists(const Path& path) override;

  // Mode 0700. Returns once the new folder's name has reached the disk.
  Path makeFolder(const Path& path) override;

  // New files get mode 0600. Anything that is not a regular file is refused with
  // kPathFileAccess, without waiting for the other end of a pipe.
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openForReading(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) override;

  // Returns once the removal of the name has reached the disk. Locks the file until then,
  // so that no other program is in the middle of an operation on it.
  void deleteFile(const Path& path) override;

  // Compares the files while it holds the lock.
  void deleteCopiedFile(const Path& path, const Path& copy) override;

  // By device and inode.
  [[nodiscard]] bool isSameFile(const Path& one, const Path& other) override;

  // Both files stay locked during the copy. If `to` is a link, the file that it leads to
  // becomes the copy. A link that belongs to another user, other than root, is replaced
  // itself.
  void copyFile(const Path& from, const Path& to) override;
  void replaceByLine(const Path& path, std::string_view line) override;

  void rename(const Path& from, const Path& to) override;

  // Reads at most 64 KiB: a longer line is cut there.
  [[nodiscard]] std::string readFirstLine(const Path& path) override;

  [[nodiscard]] std::vector<Path> fileNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> folderNames(const Path& folder) override;

  // "/" first; linux/mounted_volumes.h says which others.
  [[nodiscard]] std::vector<Path> volumes() override;

 private:
  void replaceByCopyOf(RandomAccessFile& source, const Path& to);
  [[nodiscard]] FileDescriptor openLocked(const Path& path, int flags);

  std::chrono::milliseconds lockPatience_;
};

}  // namespace quorrix
