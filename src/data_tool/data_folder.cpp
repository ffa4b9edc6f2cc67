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

// With "/" on every system.
std::string shownName(const Path& name) {
  std::string shown;
  for (const Path& part : name) shown += (shown.empty() ? "" : "/") + shownPath(part);
  return shown;
}

// Whether `folder`, with its links resolved, is `place` or above it.
bool contains(const Path& folder, const Path& place) {
  const auto difference = std::mismatch(folder.begin(), folder.end(), place.begin(), place.end());
  return difference.first == folder.end();
}

// Finds every archive once, even if links lead to it, into it, or in a circle.
class ArchiveSearch {
 public:
  ArchiveSearch(FileSystem& files, const Path& dataFolder, const ReportProblem& report)
      : files_(files),
        report_(report),
        dataFolder_(withoutLinks(dataFolder)),
        visited_{dataFolder_} {}

  // The folders themselves come before links, so that an archive has its own name.
  std::vector<DataFolder> below(const std::vector<Path>& places) {
    for (const Path& place : places) visit({place, place, {}});
    while (!links_.empty()) {
      const Entry link = links_.front();
      links_.pop_front();
      if (!contains(withoutLinks(link.path), dataFolder_)) visit(link);
    }
    std::sort(found_.begin(), found_.end(),
              [](const DataFolder& one, const DataFolder& other) { return one.path < other.path; });
    return std::move(found_);
  }

 private:
  struct Entry {
    Path place;  // of the archives
    Path path;
    Path name;  // below the place
  };

  // A folder that cannot be read is reported, and does not keep the others from being found.
  void visit(const Entry& folder) {
    if (isAboveItself(folder) || !visited_.insert(withoutLinks(folder.path)).second) return;
    try {
      withPath(folder.path, [&] { look(folder); });
    } catch (const Problem& problem) {
      report_(problem);
    }
  }

  void look(const Entry& folder) {
    const std::vector<Path> names = files_.folderNames(folder.path);
    if (!folder.name.empty() && holdsDataFiles(files_, folder.path)) {
      found_.push_back({.path = folder.path, .archive = {}, .name = folder.name});
    }
    for (const Path& name : names) {
      const Entry entry{folder.place, folder.path / name, folder.name / name};
      if (isLink(entry.path)) {
        links_.push_back(entry);
      } else {
        visit(entry);
      }
    }
  }

  // Not all systems resolve every kind of link, such as the junctions of Windows.
  static bool isAboveItself(const Entry& folder) {
    for (Path above = folder.path; above != folder.place;) {
      above = above.parent_path();
      std::error_code unknown;
      if (std::filesystem::equivalent(above, folder.path, unknown)) return true;
    }
    return false;
  }

  FileSystem& files_;
  const ReportProblem& report_;
  Path dataFolder_;
  std::set<Path> visited_;
  std::deque<Entry> links_;
  std::vector<DataFolder> found_;
};

// Archives of the same name in two places get different names, so that a copy has both.
void nameApart(std::vector<DataFolder>& archives) {
  std::set<Path> taken;
  for (const DataFolder& archive : archives) taken.insert(archive.name);
  std::set<Path> named;
  for (DataFolder& archive : archives) {
    const Path own = archive.name;
    for (int number = 2; named.contains(archive.name); ++number) {
      Path next = own;
      next += " (" + std::to_string(number) + ")";
      if (!taken.contains(next)) archive.name = next;
    }
    named.insert(archive.name);
    archive.archive = shownName(archive.name);
  }
}

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

std::vector<Path> archivePlacesOf(FileSystem& files, const Path& dataFolder) {
  std::vector<Path> places;
  const auto isPlace = [&](const Path& path) {
    return withPath(path, [&] { return files.folderExists(path); });
  };
  const Path inside = dataFolder / kArchives;
  if (isPlace(inside)) places.push_back(inside);
  // The parent of "." or "Data/" is found only in the absolute path.
  const bool isNamed =
      dataFolder.has_filename() && dataFolder.filename() != "." && dataFolder.filename() != "..";
  const Path named = isNamed ? dataFolder : absoluteFolder(dataFolder);
  for (const Path& folder : {named, withoutLinks(dataFolder)}) {
    const Path beside = folder.parent_path() / kArchives;
    if (!isPlace(beside)) continue;
    places.push_back(beside);
    break;
  }
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
  auto found = ArchiveSearch(files, dataFolder, report).below(archivePlacesOf(files, dataFolder));
  nameApart(found);
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
