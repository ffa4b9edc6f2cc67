#include "data_tool/data_folder.h"

#include <algorithm>
#include <iterator>

#include "data_tool/archive_search.h"
#include "data_tool/resolved_path.h"
#include "datafiles/working_folder.h"
#include "platform/failure.h"
#include "shell/app_paths.h"

namespace quorrix {
namespace {

constexpr const char* kArchives = "Archives";
constexpr const char* kLoadFile = "load.txt";
constexpr const char* kProgramName = "Quorrix";

constexpr const char* kDataFiles[] = {data_file::kNodes, data_file::kURLNotes,
                                      data_file::kUserIDPassword, data_file::kPurchases};

// Throws Problem if one of the files cannot be opened. A missing file is fine, and one that is in
// use will be readable soon.
void requireReadableFiles(FileSystem& files, const Path& folder) {
  for (const char* const name : kDataFiles) {
    const Path path = folder / name;
    try {
      static_cast<void>(files.openForReading(path));
    } catch (const Failure& reason) {
      const bool isFine = reason.isFileInUse() || reason.number() == failure::kFileNotFound;
      if (!isFine) throw Problem::ofFile(path, reason.number());
    }
  }
}

}  // namespace

Path defaultDataFolder(FileSystem& files, const Path& programFolder, const Path& userFolder) {
  Path besideTheProgram = AppPaths(programFolder).appPath(kDataFolderName);
  if (files.folderExists(besideTheProgram)) return besideTheProgram;
  return userFolder / kProgramName / kDataFolderName;
}

std::vector<Path> archivePlacesOf(FileSystem& files, const Path& dataFolder,
                                  const ReportProblem& report) {
  std::vector<Path> places;
  const auto isAdded = [&](const Path& path) {
    try {
      requireUnbrokenLink(files, path);
      if (!withPath(path, [&] { return files.folderExists(path); })) return false;
      places.push_back(path);
    } catch (const Problem& problem) {
      report(problem);
    }
    return true;
  };
  // The parent of "." or "Data/" is found only in the absolute path.
  const bool isNamed =
      dataFolder.has_filename() && dataFolder.filename() != "." && dataFolder.filename() != "..";
  const Path named = isNamed ? dataFolder : absoluteFolder(dataFolder);
  const bool isBeside = isAdded(named.parent_path() / kArchives);
  if (!isBeside) static_cast<void>(isAdded(withoutLinks(dataFolder).parent_path() / kArchives));
  static_cast<void>(isAdded(dataFolder / kArchives));
  return places;
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

void requireDataFiles(FileSystem& files, const Path& folder) {
  requireFolder(files, folder);
  const bool isDataFolder = withPath(folder, [&] {
    return holdsDataFiles(files, folder) || files.fileExists(folder / kLoadFile);
  });
  if (!isDataFolder) throw Problem::ofFile(folder, "This folder has no data files.");
}

std::vector<DataFolder> dataFoldersOf(FileSystem& files, const Path& dataFolder, Archives archives,
                                      const ReportProblem& report) {
  requireDataFiles(files, dataFolder);
  std::vector<DataFolder> folders{{.path = dataFolder, .archive = {}}};
  if (archives == Archives::LeaveOut) return folders;
  const FoundArchives found = findArchives(files, dataFolder, report);
  folders.insert(folders.end(), found.archives.begin(), found.archives.end());
  return folders;
}

std::vector<DataFolder> readableFoldersOf(FileSystem& files, const Path& dataFolder,
                                          Archives archives, const ReportProblem& report) {
  auto folders = dataFoldersOf(files, dataFolder, archives, report);
  std::erase_if(folders, [&](const DataFolder& folder) {
    try {
      if (!folder.archive.empty()) requireReadableFiles(files, folder.path);
      return false;
    } catch (const Problem& problem) {
      report(problem);
      return true;
    }
  });
  return folders;
}

}  // namespace quorrix
