#include "data_tool/outside.h"

#include <filesystem>
#include <system_error>

#include "data_tool/data_folder.h"
#include "data_tool/problem.h"

namespace quorrix {

Path absoluteFolder(const Path& folder) {
  const Path absolute = std::filesystem::absolute(folder).lexically_normal();
  return absolute.has_filename() ? absolute : absolute.parent_path();
}

Path withoutLinks(const Path& path) {
  std::error_code unknown;
  Path resolved = std::filesystem::weakly_canonical(std::filesystem::absolute(path), unknown);
  return absoluteFolder(unknown ? path : resolved);
}

void requireOutside(FileSystem& files, const Path& target, const Path& folder) {
  std::error_code unknown;
  Path above = withoutLinks(target);
  while (true) {
    // False if one of them is missing.
    if (std::filesystem::equivalent(above, folder, unknown)) {
      throw Problem::ofFile(target, "The output cannot be inside a folder that is read.");
    }
    if (withPath(target, [&] { return holdsDataFiles(files, above); })) {
      throw Problem::ofFile(target, "The output cannot be inside a folder with data files.");
    }
    if (above == above.parent_path()) return;
    above = above.parent_path();
  }
}

}  // namespace quorrix
