#include "data_tool/archive_search.h"

#include <algorithm>
#include <deque>
#include <filesystem>
#include <string>
#include <tuple>
#include <utility>

#include "data_tool/resolved_path.h"
#include "platform/command_line.h"
#include "platform/file_replacement.h"

namespace quorrix {
namespace {

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

class ArchiveSearch {
 public:
  ArchiveSearch(FileSystem& files, const Path& dataFolder, const ReportProblem& report)
      : files_(files),
        report_(report),
        dataFolder_(withoutLinks(dataFolder)),
        searched_{dataFolder_} {}

  // The folders themselves come before links, so that an archive has its own name.
  FoundArchives below(const std::vector<Path>& places) {
    for (const Path& place : places) visit({&place, place, {}});
    while (!links_.empty()) {
      const Entry link = links_.front();
      links_.pop_front();
      if (!contains(withoutLinks(link.path), dataFolder_)) visit(link);
    }
    std::ranges::sort(found_, [](const Entry& one, const Entry& other) {
      return std::tie(one.place, one.name) < std::tie(other.place, other.name);
    });
    FoundArchives result{.archives = {}, .searched = std::move(searched_)};
    for (const Entry& archive : found_) {
      result.archives.push_back({.path = archive.path, .archive = {}, .name = archive.name});
    }
    return result;
  }

 private:
  struct Entry {
    const Path* place;  // of the archives
    Path path;
    Path name;  // below the place
  };

  // A folder that cannot be read is reported, and does not keep the others from being found.
  void visit(const Entry& folder) {
    if (isAboveItself(folder) || !searched_.insert(withoutLinks(folder.path)).second) return;
    try {
      withPath(folder.path, [&] { look(folder); });
    } catch (const Problem& problem) {
      report_(problem);
    }
  }

  void look(const Entry& folder) {
    const std::vector<Path> names = files_.folderNames(folder.path);
    for (const Path& name : files_.fileNames(folder.path)) reportBrokenLink(folder.path / name);
    if (!folder.name.empty() && holdsDataFiles(files_, folder.path)) found_.push_back(folder);
    for (const Path& name : names) {
      if (isReplacementName(name)) continue;
      const Entry entry{folder.place, folder.path / name, folder.name / name};
      if (isLink(entry.path)) {
        links_.push_back(entry);
      } else {
        visit(entry);
      }
    }
  }

  // It may be that of an archive on a disk that is not mounted.
  void reportBrokenLink(const Path& path) {
    try {
      requireUnbrokenLink(files_, path);
    } catch (const Problem& problem) {
      report_(problem);
    }
  }

  // Not all systems resolve every kind of link, such as the junctions of Windows.
  static bool isAboveItself(const Entry& folder) {
    for (Path above = folder.path; above != *folder.place;) {
      above = above.parent_path();
      std::error_code unknown;
      if (std::filesystem::equivalent(above, folder.path, unknown)) return true;
    }
    return false;
  }

  FileSystem& files_;
  const ReportProblem& report_;
  Path dataFolder_;
  std::set<Path> searched_;
  std::deque<Entry> links_;
  std::vector<Entry> found_;
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

}  // namespace

FoundArchives findArchives(FileSystem& files, const Path& dataFolder, const ReportProblem& report) {
  const std::vector<Path> places = archivePlacesOf(files, dataFolder, report);
  FoundArchives found = ArchiveSearch(files, dataFolder, report).below(places);
  nameApart(found.archives);
  return found;
}

}  // namespace quorrix
