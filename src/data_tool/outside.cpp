#include "data_tool/outside.h"

#include <filesystem>
#include <system_error>

#include "data_tool/data_folder.h"
#include "data_tool/problem.h"
#include "platform/link_owner.h"

namespace quorrix {

Path absoluteFolder(const Path& folder) {
  std::error_code reason;
  const Path absolute = std::filesystem::absolute(folder, reason).lexically_normal();
  if (reason) throw Problem::ofFile(folder, "The working folder has been deleted.");
  return absolute.has_filename() ? absolute : absolute.parent_path();
}

Path withoutLinks(const Path& path) {
  std::error_code unknown;
  const Path absolute = std::filesystem::absolute(path, unknown);
  const Path resolved = unknown ? path : std::filesystem::weakly_canonical(absolute, unknown);
  return absoluteFolder(unknown ? path : resolved);
}

Path outputTarget(const Path& path) {
  // With a separator at its end, a path is never a link.
  if (isLinkOfAnotherUser(path.has_filename() ? path : path.parent_path())) {
    throw Problem::ofFile(path, "This link belongs to another user. Name the place it leads to.");
  }
  return withoutLinks(path);
}

bool isLink(const Path& path) {
  std::error_code unknown;
  return std::filesystem::is_symlink(path, unknown);
}

void requireOutside(FileSystem& files, const Path& target, const Path& folder) {
  const Path resolved = withoutLinks(target);
  for (Path above = resolved;; above = above.parent_path()) {
    std::error_code unknown;
    // False if one of them is missing.
    if (std::filesystem::equivalent(above, folder, unknown)) {
      throw Problem::ofFile(target, "The output cannot be inside a folder that is read.");
    }
    if (above == above.parent_path()) break;
  }
  const Path around = resolved.parent_path();
  if (withPath(target, [&] { return holdsDataFiles(files, around); })) {
    throw Problem::ofFile(around, "The output cannot be inside a folder with data files.");
  }
}

}  // namespace quorrix
