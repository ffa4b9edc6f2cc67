// The real file system, except that sync() does nothing. Only an operation's own work is
// then measured.
#pragma once

#include "platform/file_system.h"

namespace quorrix::bench {

class UnsyncedFileSystem final : public FileSystem {
 public:
  explicit UnsyncedFileSystem(FileSystem& real) : real_(real) {}

  [[nodiscard]] bool folderExists(const Path& path) override;
  [[nodiscard]] bool fileExists(const Path& path) override;
  Path makeFolder(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openForReading(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) override;
  [[nodiscard]] bool isSameFile(const Path& one, const Path& other) override;
  void deleteFile(const Path& path) override;
  void deleteCopiedFile(const Path& path, const Path& copy) override;
  void copyFile(const Path& from, const Path& to) override;
  void replaceByLine(const Path& path, std::string_view line) override;
  void rename(const Path& from, const Path& to) override;
  [[nodiscard]] std::string readFirstLine(const Path& path) override;
  [[nodiscard]] std::vector<Path> fileNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> folderNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> volumes() override;

 private:
  FileSystem& real_;
};

}  // namespace quorrix::bench
