#include "data_tool/outside.h"

#include <algorithm>
#include <filesystem>

#include "data_tool/archive_search.h"
#include "data_tool/problem.h"
#include "data_tool/resolved_path.h"

namespace quorrix {

void requireOutside(FileSystem& files, const Path& target, const Path& dataFolder) {
  const auto ignored = [](const Problem&) {};
  const std::set<Path> searched = findArchives(files, dataFolder, ignored).searched;
  const Path resolved = withoutLinks(target);
  for (Path above = resolved;; above = above.parent_path()) {
    const bool isRead = std::ranges::any_of(searched, [&above](const Path& folder) {
      std::error_code unknown;
      return std::filesystem::equivalent(above, folder, unknown);
    });
    if (isRead) throw Problem::ofFile(target, "The output cannot be inside a folder that is read.");
    if (above == above.parent_path()) break;
  }
  const Path around = resolved.parent_path();
  if (withPath(target, [&] { return holdsDataFiles(files, around); })) {
    throw Problem::ofFile(around, "The output cannot be inside a folder with data files.");
  }
}

}  // namespace quorrix
