#include "data_tool/data_folder.h"

#include <algorithm>
#include <filesystem>

#include "data_tool/problem.h"
#include "datafiles/working_folder.h"
#include "platform/command_line.h"
#include "shell/app_paths.h"

namespace quorrix {
namespace {

constexpr const char* kArchives = "Archives";
constexpr const char* kProgramName = "Quorrix";

// A chain of mounts or junctions may lead back to where it began.
constexpr int kDeepestArchive = 16;

constexpr const char* kDataFiles[] = {data_file::kNodes, data_file::kURLNotes,
                                      data_file::kUserIDPassword, data_file::kPurchases};

bool isLink(const Path& path) {
  std::error_code unknown;
  return std::filesystem::is_symlink(path, unknown);
}

class ArchiveSearch {
 public:
  ArchiveSearch(FileSystem& files, const Path& dataFolder, std::vector<DataFolder>& found)
      : files_(files), dataFolder_(dataFolder), found_(found) {}

  void searchBelow(const Path& folder, const std::string& name, int depth) {
    if (depth > kDeepestArchive) return;
    for (const Path& entry : withPath(folder, [&] { return files_.folderNames(folder); })) {
      take(folder / entry, name.empty() ? shownPath(entry) : name + "/" + shownPath(entry), depth);
    }
  }

 private:
  void take(const Path& folder, const std::string& name, int depth) {
    if (withPath(folder, [&] { return files_.isSameFile(folder, dataFolder_); })) return;
    if (withPath(folder, [&] { return holdsDataFiles(files_, folder); })) {
      found_.push_back({.path = folder, .archive = name});
    }
    if (!isLink(folder)) searchBelow(folder, name, depth + 1);
  }

  FileSystem& files_;
  const Path& dataFolder_;
  std::vector<DataFolder>& found_;
};

}  // namespace

Path defaultDataFolder(FileSystem& files, const Path& programFolder, const Path& userFolder) {
  Path besideTheProgram = AppPaths(programFolder).appPath(kDataFolderName);
  if (files.folderExists(besideTheProgram)) return besideTheProgram;
  return userFolder / kProgramName / kDataFolderName;
}

Path archivesOf(FileSystem& files, const Path& dataFolder) {
  Path inside = dataFolder / kArchives;
  if (files.folderExists(inside)) return inside;
  // The parent of "." or "Data/" is found only in the absolute path.
  Path absolute = std::filesystem::absolute(dataFolder).lexically_normal();
  if (!absolute.has_filename()) absolute = absolute.parent_path();
  const bool isRelative = dataFolder.is_relative() && dataFolder.has_filename() &&
                          dataFolder.filename() != "." && dataFolder.filename() != "..";
  const Path parent = isRelative ? dataFolder.parent_path() : absolute.parent_path();
  return parent / kArchives;
}

bool holdsDataFiles(FileSystem& files, const Path& folder) {
  return std::any_of(std::begin(kDataFiles), std::end(kDataFiles),
                     [&](const char* name) { return files.fileExists(folder / name); });
}

void requireFolder(FileSystem& files, const Path& folder) {
  if (!withPath(folder, [&] { return files.folderExists(folder); })) {
    throw Problem::ofFile(folder, "There is no such folder.");
  }
}

std::vector<DataFolder> dataFoldersOf(FileSystem& files, const Path& dataFolder,
                                      Archives archives) {
  requireFolder(files, dataFolder);
  std::vector<DataFolder> folders{{.path = dataFolder, .archive = {}}};
  if (archives == Archives::LeaveOut) return folders;
  const Path place = withPath(dataFolder, [&] { return archivesOf(files, dataFolder); });
  const bool hasArchives = withPath(place, [&] { return files.folderExists(place); });
  if (hasArchives) ArchiveSearch(files, dataFolder, folders).searchBelow(place, "", 1);
  return folders;
}

}  // namespace quorrix
