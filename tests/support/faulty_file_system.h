// Stands between the code under test and a working file system, counts every call to it
// and to the files opened through it, and makes chosen calls fail. A call that is to fail
// does not reach the file system behind.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/file_system.h"

namespace quorrix::test {

enum class FileCall {
  FolderExists,
  FileExists,
  MakeFolder,
  OpenRandomAccess,
  OpenForReading,
  OpenAsPermitted,
  DeleteFile,
  CopyFile,
  IsSameFile,
  ReplaceByLine,
  Rename,
  ReadFirstLine,
  FileNames,
  FolderNames,
  Volumes,
  Length,
  ReadAt,
  WriteAt,
  Sync,
};

class FaultyFileSystem final : public FileSystem {
 public:
  // `behind` must outlive this object and every file opened through it.
  explicit FaultyFileSystem(FileSystem& behind);

  // The n-th call from now on, counted from 1, throws Failure(number). Only that call
  // fails, except that the bytes of a failed read stay unreadable until the file is
  // closed.
  void failAtCall(int n, int number);

  // The same for the n-th call of this kind from now on.
  void failAtCall(FileCall kind, int n, int number);

  // The n-th call from now on takes effect, and then fails, as when a folder cannot be
  // synced. Calls that change nothing on the disk, except opening, do not fail this way.
  void failAfterCall(int n, int number);

  // The next read fails, but succeeds when it is repeated.
  void failOneRead(int number);

  // Every call from now on fails, as if the disk had been removed.
  void failAlways(int number);

  // A bad spot on the disk: every read of any of these bytes fails.
  void spoilBytes(std::uint64_t first, std::uint64_t count, int number);

  // The n-th read from now on returns at most `bytes` of the requested bytes, as if
  // another program had just truncated the file.
  void cutReadShort(int n, std::size_t bytes);

  // Called at the beginning of every call.
  void onEveryCall(std::function<void()> look);

  // Removes all faults and forgets all calls.
  void reset();

  // Every call made, including the failed ones, in order.
  [[nodiscard]] const std::vector<FileCall>& calls() const;
  [[nodiscard]] int callsOf(FileCall kind) const;

  [[nodiscard]] bool folderExists(const Path& path) override;
  [[nodiscard]] bool fileExists(const Path& path) override;
  Path makeFolder(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openForReading(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) override;
  void deleteFile(const Path& path) override;
  // Counts as DeleteFile.
  void deleteCopiedFile(const Path& path, const Path& copy) override;
  [[nodiscard]] bool isSameFile(const Path& one, const Path& other) override;
  void copyFile(const Path& from, const Path& to) override;
  void replaceByLine(const Path& path, std::string_view line) override;
  void rename(const Path& from, const Path& to) override;
  [[nodiscard]] std::string readFirstLine(const Path& path) override;
  [[nodiscard]] std::vector<Path> fileNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> folderNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> volumes() override;

 private:
  struct Plan;
  class File;

  FileSystem& behind_;
  std::shared_ptr<Plan> plan_;
};

}  // namespace quorrix::test
