#include "data_tool/data_folder.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <set>
#include <utility>

#include "data_tool/outside.h"
#include "datafiles/working_folder.h"
#include "platform/command_line.h"
#include "platform/failure.h"
#include "shell/app_paths.h"

namespace quorrix {
namespace {

constexpr const char* kArchives = "Archives";
constexpr const char* kLoadFile = "load.txt";
constexpr const char* kProgramName = "Quorrix";

constexpr const char* kDataFiles[] = {data_file::kNodes, data_file::kURLNotes,
                                      data_file::kUserIDPassword, data_file::kPurchases};

bool isLink(const Path& path) {
  std::error_code unknown;
  return std::filesystem::is_symlink(path, unknown);
}

// Finds every archive once, also if links lead to it, below it or in a circle.
class ArchiveSearch {
 public:
  ArchiveSearch(FileSystem& files, const Path& dataFolder, const Path& place,
                const ReportProblem& report)
      : files_(files), place_(place), report_(report), visited_{withoutLinks(dataFolder)} {}

  // The folders themselves come before links, so that an archive has its own name.
  std::vector<DataFolder> all() {
    visit(place_, "");
    while (!links_.empty()) {
      const DataFolder link = links_.front();
      links_.pop_front();
      visit(link.path, link.archive);
    }
    std::sort(found_.begin(), found_.end(),
              [](const DataFolder& one, const DataFolder& other) { return one.path < other.path; });
    return std::move(found_);
  }

 private:
  // A folder that cannot be read is reported, and does not keep the others from being found.
  void visit(const Path& folder, const std::string& name) {
    if (isAboveItself(folder) || !visited_.insert(withoutLinks(folder)).second) return;
    try {
      withPath(folder, [&] { look(folder, name); });
    } catch (const Problem& problem) {
      report_(problem);
    }
  }

  void look(const Path& folder, const std::string& name) {
    const std::vector<Path> entries = files_.folderNames(folder);
    if (!name.empty() && holdsDataFiles(files_, folder)) found_.push_back({folder, name});
    for (const Path& entry : entries) {
      const Path path = folder / entry;
      const std::string entryName = name.empty() ? shownPath(entry) : name + "/" + shownPath(entry);
      if (isLink(path)) {
        links_.push_back({path, entryName});
      } else {
        visit(path, entryName);
      }
    }
  }

  // Not all systems resolve every kind of link, such as the junctions of Windows.
  bool isAboveItself(const Path& folder) const {
    for (Path above = folder; above != place_;) {
      above = above.parent_path();
      std::error_code unknown;
      if (std::filesystem::equivalent(above, folder, unknown)) return true;
    }
    return false;
  }

  FileSystem& files_;
  const Path& place_;
  const ReportProblem& report_;
  std::set<Path> visited_;
  std::deque<DataFolder> links_;
  std::vector<DataFolder> found_;
};

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

Path archivesOf(FileSystem& files, const Path& dataFolder) {
  Path inside = dataFolder / kArchives;
  if (files.folderExists(inside)) return inside;
  // The parent of "." or "Data/" is found only in the absolute path.
  const bool isNamed =
      dataFolder.has_filename() && dataFolder.filename() != "." && dataFolder.filename() != "..";
  return (isNamed ? dataFolder : absoluteFolder(dataFolder)).parent_path() / kArchives;
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
  const Path place = withPath(dataFolder, [&] { return archivesOf(files, dataFolder); });
  if (!withPath(place, [&] { return files.folderExists(place); })) return folders;
  auto found = ArchiveSearch(files, dataFolder, place, report).all();
  folders.insert(folders.end(), found.begin(), found.end());
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
