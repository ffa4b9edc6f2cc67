#include "unsynced_file_system.h"

#include <filesystem>
#include <utility>

#include "platform/file_replacement.h"

namespace quorrix::bench {
namespace {

class UnsyncedFile final : public RandomAccessFile {
 public:
  explicit UnsyncedFile(std::unique_ptr<RandomAccessFile> real) : real_(std::move(real)) {}

  [[nodiscard]] std::uint64_t length() override { return real_->length(); }
  [[nodiscard]] std::size_t readAt(std::uint64_t offset, std::span<char> into) override {
    return real_->readAt(offset, into);
  }
  void writeAt(std::uint64_t offset, std::span<const char> bytes) override {
    real_->writeAt(offset, bytes);
  }
  void sync() override {}

 private:
  std::unique_ptr<RandomAccessFile> real_;
};

}  // namespace

bool UnsyncedFileSystem::folderExists(const Path& path) { return real_.folderExists(path); }

bool UnsyncedFileSystem::fileExists(const Path& path) { return real_.fileExists(path); }

Path UnsyncedFileSystem::makeFolder(const Path& path) { return real_.makeFolder(path); }

std::unique_ptr<RandomAccessFile> UnsyncedFileSystem::openForReading(const Path& path) {
  return real_.openForReading(path);
}

std::unique_ptr<RandomAccessFile> UnsyncedFileSystem::openAsPermitted(const Path& path) {
  return std::make_unique<UnsyncedFile>(real_.openAsPermitted(path));
}

void UnsyncedFileSystem::deleteCopiedFile(const Path& path, const Path& copy) {
  real_.deleteCopiedFile(path, copy);
}

bool UnsyncedFileSystem::isSameFile(const Path& one, const Path& other) {
  return real_.isSameFile(one, other);
}

std::unique_ptr<RandomAccessFile> UnsyncedFileSystem::openRandomAccess(const Path& path) {
  return std::make_unique<UnsyncedFile>(real_.openRandomAccess(path));
}

void UnsyncedFileSystem::deleteFile(const Path& path) { real_.deleteFile(path); }

void UnsyncedFileSystem::copyFile(const Path& from, const Path& to) {
  const auto source = real_.openForReading(from);
  const auto next = real_.openRandomAccess(replacementNameOf(to));
  writeCopy(*source, *next);
  std::filesystem::rename(replacementNameOf(to), to);
}

void UnsyncedFileSystem::replaceByLine(const Path& path, std::string_view line) {
  writeLine(line, *real_.openRandomAccess(replacementNameOf(path)));
  std::filesystem::rename(replacementNameOf(path), path);
}

void UnsyncedFileSystem::rename(const Path& from, const Path& to) {
  std::filesystem::rename(from, to);
}

std::string UnsyncedFileSystem::readFirstLine(const Path& path) {
  return real_.readFirstLine(path);
}

std::vector<Path> UnsyncedFileSystem::fileNames(const Path& folder) {
  return real_.fileNames(folder);
}

std::vector<Path> UnsyncedFileSystem::folderNames(const Path& folder) {
  return real_.folderNames(folder);
}

std::vector<Path> UnsyncedFileSystem::volumes() { return real_.volumes(); }

}  // namespace quorrix::bench
