// The file system of Windows.
#pragma once

#include <chrono>
#include <functional>

#include "platform/file_system.h"
#include "platform/lock_patience.h"

namespace quorrix {

class UniqueHandle;

class WindowsFileSystem final : public FileSystem {
 public:
  // `lockPatience` is how long an open waits for another program's lock. The constructor
  // also makes a drive without a medium fail with a number: on the calling thread, the
  // system no longer shows its own box that asks for the medium.
  explicit WindowsFileSystem(std::chrono::milliseconds lockPatience = kLockPatience);

  // Fails when it cannot tell, for example inside a folder that may not be entered.
  [[nodiscard]] bool folderExists(const Path& path) override;
  [[nodiscard]] bool fileExists(const Path& path) override;

  // The folder inherits its permissions from its parent, as everywhere in a user's
  // profile.
  Path makeFolder(const Path& path) override;

  // Anything that is not a file on a disk ("CON", a pipe) is refused with
  // kPathFileAccess. A file that was deleted while another program had it open is waited
  // for like a locked one.
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openForReading(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) override;

  // Compares volume and file index; if the files have no index, their final paths.
  [[nodiscard]] bool isSameFile(const Path& one, const Path& other) override;

  // Waits, as an open does, while another program has the file open.
  void deleteFile(const Path& path) override;
  void deleteCopiedFile(const Path& path, const Path& copy) override;

  // Locks `from` during the copy. Waits, as an open does, for another program to close `to`.
  void copyFile(const Path& from, const Path& to) override;
  void replaceByLine(const Path& path, std::string_view line) override;

  // Waits, as an open does, for another program to close `to`.
  void rename(const Path& from, const Path& to) override;

  // Reads at most 64 KiB: a longer line is cut there.
  [[nodiscard]] std::string readFirstLine(const Path& path) override;

  [[nodiscard]] std::vector<Path> fileNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> folderNames(const Path& folder) override;

  // The roots of all drive letters.
  [[nodiscard]] std::vector<Path> volumes() override;

 private:
  enum class Access { Read, ReadWrite };
  [[nodiscard]] UniqueHandle openLocked(const Path& path, Access access);
  void replaceByCopyOf(RandomAccessFile& source, const Path& to);
  void replace(const Path& path, const std::function<void(RandomAccessFile&)>& write);

  std::chrono::milliseconds lockPatience_;
};

}  // namespace quorrix
