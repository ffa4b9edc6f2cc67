// A file system that lives in memory, so that a test of the logic needs no disk
// and cannot leave anything behind. It throws the numbers that the real ones
// throw, and lets a test look at what was left in each file.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/file_system.h"

namespace quorrix::test {

class MemoryFileSystem final : public FileSystem {
 public:
  // A folder with everything above it.
  void givenAFolder(const Path& path);

  // Replaces a file that is there already.
  void givenAFile(const Path& path, std::string bytes);
  void givenAReadOnlyFile(const Path& path, std::string bytes);

  // What volumes() answers; at first "/" alone.
  void givenVolumes(std::vector<Path> volumes) { volumes_ = std::move(volumes); }

  // Listing this folder or one below fails with the number, as on a drive that has
  // no medium or in a folder that may not be read; 0 lets it be read again.
  void failListing(const Path& folder, int number);

  [[nodiscard]] bool holdsFile(const Path& path) const;

  // Throws Failure 53 when there is no such file.
  [[nodiscard]] const std::string& bytesOf(const Path& path) const;

  // False while something was written to the file after its last sync.
  [[nodiscard]] bool isSynced(const Path& path) const;

  // Files opened and not closed yet.
  [[nodiscard]] int openFiles() const;

  [[nodiscard]] bool folderExists(const Path& path) override;
  [[nodiscard]] bool fileExists(const Path& path) override;
  Path makeFolder(const Path& path) override;

  // 75 also for a file that is open already, unless both are for reading: the lock
  // would not be had.
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openForReading(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) override;

  // Each 75 for a read-only file and one that is open.
  void deleteFile(const Path& path) override;
  [[nodiscard]] bool isSameFile(const Path& one, const Path& other) override;
  void copyFile(const Path& from, const Path& to) override;
  void replaceByLine(const Path& path, std::string_view line) override;
  [[nodiscard]] std::string readFirstLine(const Path& path) override;
  [[nodiscard]] std::vector<Path> fileNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> folderNames(const Path& folder) override;
  [[nodiscard]] std::vector<Path> volumes() override;

 private:
  struct File {
    std::string bytes;
    bool isReadOnly = false;
    bool isSynced = true;
    int readers = 0;
    int writers = 0;

    [[nodiscard]] bool isOpen() const { return readers + writers > 0; }
  };
  class OpenFile;

  [[nodiscard]] const File& fileAt(const Path& path) const;
  void requireWritable(const Path& path) const;
  void requireFolderOf(const Path& path) const;
  void requireReadableFolder(const Path& folder) const;

  std::map<std::string, std::shared_ptr<File>> files_;
  std::set<std::string> folders_;
  std::map<std::string, int> listingFailures_;
  std::vector<Path> volumes_{"/"};
};

}  // namespace quorrix::test
