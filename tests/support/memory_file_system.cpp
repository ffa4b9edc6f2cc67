#include "support/memory_file_system.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"

namespace quorrix::test {
namespace {

// One name for all spellings of a path: "/" between folders, none at the end.
std::string nameOf(const Path& path) {
  const std::u8string bytes = path.lexically_normal().generic_u8string();
  std::string name(bytes.begin(), bytes.end());
  if (name.size() > 1 && name.ends_with('/')) name.pop_back();
  return name;
}

// The names of those paths that are directly in `folder`.
std::vector<Path> namesIn(const std::string& folder, const std::vector<std::string>& paths) {
  std::vector<std::u8string> names;
  for (const std::string& path : paths) {
    const auto end = path.rfind('/');
    if (end == std::string::npos || end + 1 == path.size()) continue;
    if (path.substr(0, std::max<std::size_t>(end, 1)) != folder) continue;
    names.emplace_back(path.begin() + static_cast<std::ptrdiff_t>(end) + 1, path.end());
  }
  std::sort(names.begin(), names.end());
  return {names.begin(), names.end()};
}

}  // namespace

class MemoryFileSystem::OpenFile final : public RandomAccessFile {
 public:
  enum class Access { Read, ReadWrite };

  OpenFile(std::shared_ptr<File> file, Access access) : file_(std::move(file)), access_(access) {
    ++openCount();
  }
  ~OpenFile() override { --openCount(); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  std::uint64_t length() override { return file_->bytes.size(); }

  std::size_t readAt(std::uint64_t offset, std::span<char> into) override {
    const std::string& bytes = file_->bytes;
    if (offset >= bytes.size()) return 0;
    return bytes.copy(into.data(), into.size(), static_cast<std::size_t>(offset));
  }

  void writeAt(std::uint64_t offset, std::span<const char> bytes) override {
    if (access_ == Access::Read) throw Failure(failure::kPathFileAccess);
    const auto start = static_cast<std::size_t>(offset);
    if (file_->bytes.size() < start + bytes.size()) file_->bytes.resize(start + bytes.size());
    std::copy(bytes.begin(), bytes.end(),
              file_->bytes.begin() + static_cast<std::ptrdiff_t>(start));
    file_->isSynced = false;
  }

  void sync() override { file_->isSynced = true; }

 private:
  int& openCount() { return access_ == Access::Read ? file_->readers : file_->writers; }

  std::shared_ptr<File> file_;
  Access access_;
};

void MemoryFileSystem::givenAFolder(const Path& path) {
  for (Path folder = path.lexically_normal(); !folder.empty(); folder = folder.parent_path()) {
    folders_.insert(nameOf(folder));
    if (folder == folder.parent_path()) break;
  }
}

void MemoryFileSystem::givenAFile(const Path& path, std::string bytes) {
  givenAFolder(path.parent_path());
  files_[nameOf(path)] = std::make_shared<File>(File{.bytes = std::move(bytes)});
}

void MemoryFileSystem::givenAReadOnlyFile(const Path& path, std::string bytes) {
  givenAFile(path, std::move(bytes));
  files_[nameOf(path)]->isReadOnly = true;
}

bool MemoryFileSystem::holdsFile(const Path& path) const { return files_.contains(nameOf(path)); }

const std::string& MemoryFileSystem::bytesOf(const Path& path) const { return fileAt(path).bytes; }

std::map<std::string, std::string> MemoryFileSystem::contents() const {
  std::map<std::string, std::string> bytes;
  for (const auto& [path, file] : files_) bytes.emplace(path, file->bytes);
  return bytes;
}

bool MemoryFileSystem::isSynced(const Path& path) const { return fileAt(path).isSynced; }

int MemoryFileSystem::openFiles() const {
  return static_cast<int>(std::count_if(files_.begin(), files_.end(),
                                        [](const auto& named) { return named.second->isOpen(); }));
}

bool MemoryFileSystem::folderExists(const Path& path) { return folders_.contains(nameOf(path)); }

bool MemoryFileSystem::fileExists(const Path& path) { return holdsFile(path); }

Path MemoryFileSystem::makeFolder(const Path& path) {
  requireFolderOf(path);
  if (holdsFile(path) || folderExists(path)) throw Failure(failure::kPathFileAccess);
  folders_.insert(nameOf(path));
  return path;
}

std::unique_ptr<RandomAccessFile> MemoryFileSystem::openRandomAccess(const Path& path) {
  requireFolderOf(path);
  if (folderExists(path)) throw Failure(failure::kPathFileAccess);
  if (!holdsFile(path)) givenAFile(path, "");
  const std::shared_ptr<File>& file = files_[nameOf(path)];
  if (file->isReadOnly) throw Failure(failure::kPathFileAccess);
  if (file->isOpen()) throw Failure::ofFileInUse();
  return std::make_unique<OpenFile>(file, OpenFile::Access::ReadWrite);
}

std::unique_ptr<RandomAccessFile> MemoryFileSystem::openForReading(const Path& path) {
  requireFolderOf(path);
  if (folderExists(path)) throw Failure(failure::kPathFileAccess);
  static_cast<void>(fileAt(path));
  const std::shared_ptr<File>& file = files_[nameOf(path)];
  if (file->writers > 0) throw Failure::ofFileInUse();
  return std::make_unique<OpenFile>(file, OpenFile::Access::Read);
}

std::unique_ptr<RandomAccessFile> MemoryFileSystem::openAsPermitted(const Path& path) {
  const bool isReadOnly = holdsFile(path) && fileAt(path).isReadOnly;
  return isReadOnly ? openForReading(path) : openRandomAccess(path);
}

void MemoryFileSystem::deleteFile(const Path& path) {
  requireWritable(path);
  files_.erase(nameOf(path));
}

void MemoryFileSystem::deleteCopiedFile(const Path& path, const Path& copy) {
  if (bytesOf(path) != bytesOf(copy)) copyFile(path, copy);
  deleteFile(path);
}

bool MemoryFileSystem::isSameFile(const Path& one, const Path& other) {
  return holdsFile(one) && nameOf(one) == nameOf(other);
}

void MemoryFileSystem::copyFile(const Path& from, const Path& to) {
  std::string bytes(static_cast<std::size_t>(openForReading(from)->length()), '\0');
  static_cast<void>(openForReading(from)->readAt(0, bytes));
  if (nameOf(from) == nameOf(to)) return;
  requireFolderOf(to);
  if (folderExists(to) || holdsFile(to)) requireWritable(to);
  givenAFile(to, std::move(bytes));
}

void MemoryFileSystem::replaceByLine(const Path& path, std::string_view line) {
  requireWritable(path);
  givenAFile(path, std::string(line) + "\r\n");
}

void MemoryFileSystem::rename(const Path& from, const Path& to) {
  requireWritable(from);
  if (holdsFile(to)) requireWritable(to);
  requireFolderOf(to);
  auto file = files_.extract(nameOf(from));
  files_.erase(nameOf(to));
  file.key() = nameOf(to);
  files_.insert(std::move(file));
}

std::string MemoryFileSystem::readFirstLine(const Path& path) {
  requireFolderOf(path);
  if (folderExists(path)) throw Failure(failure::kPathFileAccess);
  const std::string& bytes = bytesOf(path);
  return bytes.substr(0, bytes.find_first_of("\r\n"));
}

void MemoryFileSystem::failListing(const Path& folder, int number) {
  listingFailures_[nameOf(folder)] = number;
}

std::vector<Path> MemoryFileSystem::fileNames(const Path& folder) {
  requireReadableFolder(folder);
  std::vector<std::string> paths;
  for (const auto& [path, file] : files_) paths.push_back(path);
  return namesIn(nameOf(folder), paths);
}

std::vector<Path> MemoryFileSystem::folderNames(const Path& folder) {
  requireReadableFolder(folder);
  return namesIn(nameOf(folder), {folders_.begin(), folders_.end()});
}

std::vector<Path> MemoryFileSystem::volumes() { return volumes_; }

void MemoryFileSystem::requireReadableFolder(const Path& folder) const {
  for (Path above = folder.lexically_normal();; above = above.parent_path()) {
    const auto failing = listingFailures_.find(nameOf(above));
    if (failing != listingFailures_.end() && failing->second != 0) throw Failure(failing->second);
    if (above == above.parent_path()) break;
  }
  if (holdsFile(folder)) throw Failure(failure::kPathFileAccess);
  if (!folders_.contains(nameOf(folder))) throw Failure(failure::kPathNotFound);
}

const MemoryFileSystem::File& MemoryFileSystem::fileAt(const Path& path) const {
  const auto place = files_.find(nameOf(path));
  if (place == files_.end()) throw Failure(failure::kFileNotFound);
  return *place->second;
}

void MemoryFileSystem::requireWritable(const Path& path) const {
  requireFolderOf(path);
  if (folders_.contains(nameOf(path))) throw Failure(failure::kPathFileAccess);
  const File& file = fileAt(path);
  if (file.isReadOnly) throw Failure(failure::kPathFileAccess);
  if (file.isOpen()) throw Failure::ofFileInUse();
}

void MemoryFileSystem::requireFolderOf(const Path& path) const {
  const Path folder = path.lexically_normal().parent_path();
  if (!folder.empty() && !folders_.contains(nameOf(folder))) throw Failure(failure::kPathNotFound);
}

}  // namespace quorrix::test
