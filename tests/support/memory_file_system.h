// A file system in memory, so that tests of the logic need no disk and leave nothing
// behind. It throws the same numbers as the real ones, and lets a test see the content of
// each file.
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
  // Makes a folder and all folders above it.
  void givenAFolder(const Path& path);

  // Replaces an existing file.
  void givenAFile(const Path& path, std::string bytes);
  void givenAReadOnlyFile(const Path& path, std::string bytes);

  // Sets what volumes() returns; initially "/" alone.
  void givenVolumes(std::vector<Path> volumes) { volumes_ = std::move(volumes); }

  // Makes listing this folder, or one below it, fail with the number, as on a drive
  // without a medium or in a folder that may not be read. 0 makes it readable again.
  void failListing(const Path& folder, int number);

  [[nodiscard]] bool holdsFile(const Path& path) const;

  // Throws Failure 53 if the file does not exist.
  [[nodiscard]] const std::string& bytesOf(const Path& path) const;

  // The bytes of every file, by path.
  [[nodiscard]] std::map<std::string, std::string> contents() const;

  // False if something was written to the file after its last sync.
  [[nodiscard]] bool isSynced(const Path& path) const;

  // The number of files that are open.
  [[nodiscard]] int openFiles() const;

  [[nodiscard]] bool folderExists(const Path& path) override;
  [[nodiscard]] bool fileExists(const Path& path) override;
  Path makeFolder(const Path& path) override;

  // Also throws 75 for a file that is already open, unless both are for reading, because
  // the lock would be refused.
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openRandomAccess(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openForReading(const Path& path) override;
  [[nodiscard]] std::unique_ptr<RandomAccessFile> openAsPermitted(const Path& path) override;

  // Deleting, copying over and replacing a file throw 75 if it is read-only or open.
  void deleteFile(const Path& path) override;
  void deleteCopiedFile(const Path& path, const Path& copy) override;
  [[nodiscard]] bool isSameFile(const Path& one, const Path& other) override;
  void copyFile(const Path& from, const Path& to) override;
  void replaceByLine(const Path& path, std::string_view line) override;
  // For files only.
  void rename(const Path& from, const Path& to) override;
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
