#include "data_tool/folder_copy.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

#include "data_tool/outside.h"
#include "data_tool/problem.h"
#include "data_tool/record_reader.h"
#include "datafiles/working_folder.h"
#include "platform/failure.h"
#include "platform/file_replacement.h"

namespace quorrix {
namespace {

// The largest file is last, so that the others are locked only briefly.
constexpr const char* kFileNames[] = {"load.txt", data_file::kUserIDPassword, data_file::kPurchases,
                                      data_file::kURLNotes, data_file::kNodes};

struct OpenFile {
  const char* name;
  std::unique_ptr<RandomAccessFile> file;
};

// The folder in which the copy is made. Removed again unless it is given its final name.
class Stage {
 public:
  Stage(FileSystem& files, const Path& target)
      : files_(files), target_(target), path_(replacementNameOf(target)) {
    if (withPath(path_, [&] { return files_.folderExists(path_) || files_.fileExists(path_); })) {
      throw Problem::ofFile(path_, "This is an unfinished copy. Remove it and try again.");
    }
    path_ = withPath(path_, [&] { return files_.makeFolder(path_); });
  }

  ~Stage() {
    std::error_code ignored;
    if (!isFinished_) std::filesystem::remove_all(path_, ignored);
  }

  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  [[nodiscard]] const Path& path() const { return path_; }

  void finish() {
    std::error_code reason;
    std::filesystem::remove(target_, reason);
    if (reason) throw Problem::ofFile(target_, "The empty folder cannot be replaced by the copy.");
    withPath(target_, [&] { files_.rename(path_, target_); });
    isFinished_ = true;
  }

 private:
  FileSystem& files_;
  Path target_;
  Path path_;
  bool isFinished_ = false;
};

// nullopt if another program is writing one of the files. None stays locked then.
std::optional<std::vector<OpenFile>> openAll(FileSystem& files, const Path& folder) {
  std::vector<OpenFile> opened;
  for (const char* const name : kFileNames) {
    try {
      opened.push_back({name, files.openForReading(folder / name)});
    } catch (const Failure& reason) {
      if (reason.isFileInUse()) return std::nullopt;
      if (reason.number() != failure::kFileNotFound) {
        throw Problem::ofFile(folder / name, reason.number());
      }
    }
  }
  return opened;
}

std::vector<OpenFile> openAllPatiently(FileSystem& files, const Path& folder,
                                       std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (true) {
    if (auto opened = openAll(files, folder)) return std::move(*opened);
    if (std::chrono::steady_clock::now() >= deadline) {
      throw Problem::ofFile(folder, "Another program is using the files. Try again later.");
    }
  }
}

void copyFiles(FileSystem& files, const Path& from, const Path& into,
               std::chrono::milliseconds patience) {
  std::vector<OpenFile> copies;
  for (OpenFile& source : openAllPatiently(files, from, patience)) {
    const Path path = into / source.name;
    copies.push_back({source.name, withPath(path, [&] { return files.openRandomAccess(path); })});
    withPath(path, [&] { writeCopy(*source.file, *copies.back().file); });
    source.file.reset();
  }
  for (const OpenFile& copy : copies) {
    withPath(into / copy.name, [&] { copy.file->sync(); });
  }
}

// Makes the folder and those above it that are missing.
void makeFolders(FileSystem& files, const Path& folder) {
  if (withPath(folder, [&] { return files.folderExists(folder); })) return;
  makeFolders(files, folder.parent_path());
  withPath(folder, [&] { return files.makeFolder(folder); });
}

void requireEmpty(FileSystem& files, const Path& target) {
  if (withPath(target, [&] { return files.fileExists(target); })) {
    throw Problem::ofFile(target, "This is a file. Name a new or empty folder.");
  }
  std::error_code unknown;
  if (std::filesystem::is_symlink(target, unknown)) {
    throw Problem::ofFile(target, "This is a link to a folder that is missing.");
  }
  const bool exists = withPath(target, [&] { return files.folderExists(target); });
  if (!exists) return;
  const bool isEmpty = withPath(
      target, [&] { return files.fileNames(target).empty() && files.folderNames(target).empty(); });
  if (!isEmpty) throw Problem::ofFile(target, "This folder is not empty.");
}

}  // namespace

void copyFolders(FileSystem& files, const Path& data, Archives archives, const Path& target,
                 std::chrono::milliseconds patience) {
  requireFolder(files, data);
  const Path place = withPath(data, [&] { return archivesOf(files, data); });
  const Path named = withoutLinks(target);
  requireOutside(files, named, data);
  requireOutside(files, named, place);
  requireEmpty(files, named);
  if (!withPath(data, [&] { return holdsDataFiles(files, data); })) {
    throw Problem::ofFile(data, "There are no data files in this folder.");
  }
  Stage stage(files, named);
  copyFiles(files, data, stage.path(), patience);
  for (const DataFolder& folder : dataFoldersOf(files, data, archives)) {
    if (folder.archive.empty()) continue;
    const Path into = stage.path() / "Archives" / folder.path.lexically_relative(place);
    makeFolders(files, into);
    copyFiles(files, folder.path, into, patience);
  }
  stage.finish();
}

}  // namespace quorrix
