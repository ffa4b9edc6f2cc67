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
  // `lockPatience` is how long an open waits for another program's lock.
  // Lets a drive without a medium fail with a number: on the thread that calls this,
  // the system shows no box of its own that asks for one.
  explicit WindowsFileSystem(std::chrono::milliseconds lockPatience = kLockPatience);

  // Fails when it cannot tell, for example inside a folder that may not be entered.
  [[nodiscard]] bool folderExists(const Path& path) override;
  [[nodiscard]] bool fileExists(const Path& path) override;

  // Who may enter follows from the folder above, as everywhere in a user's profile.
  Path makeFolder(const Path& path) override;

  // Whatever is no file on a disk ("CON", a pipe) is refused with kPathFileAccess. A file that was
  // deleted while another program had it open is waited for as one that is locked.
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openForReading(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) override;

  // By volume and file index; without these, by the final path.
  [[nodiscard]] bool isSameFile(const Path& one, const Path& other) override;

  // Waits as an open does for a file that another program has open.
  void deleteFile(const Path& path) override;

  // Locks `from` during the copy. Waits, as an open does, for another program to close `to`.
  void copyFile(const Path& from, const Path& to) override;
  void replaceByLine(const Path& path, std::string_view line) override;

  // Reads at most 64 KiB: a longer line is cut there.
  [[nodiscard]] std::string readFirstLine(const Path& path) override;

  [[nodiscard]] std::vector<Path> fileNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> folderNames(const Path& folder) override;

  // The roots of all drive letters.
  [[nodiscard]] std::vector<Path> volumes() override;

 private:
  enum class Access { Read, ReadWrite };
  [[nodiscard]] UniqueHandle openLocked(const Path& path, Access access);
  void replace(const Path& path, const std::function<void(RandomAccessFile&)>& write);
  void renameOver(const Path& name, const Path& target);

  std::chrono::milliseconds lockPatience_;
};

}  // namespace quorrix
