#include "data_tool/resolved_path.h"

#include <deque>
#include <filesystem>
#include <system_error>

#include "data_tool/problem.h"
#include "platform/link_kind.h"

namespace quorrix {
namespace {

// Longer chains are refused by the systems.
constexpr int kMostLinks = 40;

void requireHarmlessLink(const Path& path) {
  switch (linkKindOf(path)) {
    case LinkKind::AnotherUsers:
      throw Problem::ofFile(path, "This link belongs to another user. Name the place it leads to.");
    case LinkKind::OpenFile:
      throw Problem::ofFile(path, kUseStandardOutput);
    case LinkKind::None:
    case LinkKind::Own:
      break;
  }
}

// Follows the links of an absolute path one by one.
void requireHarmlessLinks(const Path& path) {
  std::deque<Path> parts(path.begin(), path.end());
  Path place;
  int links = 0;
  while (!parts.empty()) {
    const Path part = parts.front();
    parts.pop_front();
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      place = place.parent_path();
      continue;
    }
    const Path next = place / part;
    requireHarmlessLink(next);
    std::error_code unknown;
    if (!isLink(next) || ++links > kMostLinks) {
      place = next;
      continue;
    }
    const Path target = std::filesystem::read_symlink(next, unknown);
    if (target.is_absolute()) place = target.root_path();
    const Path rest = target.relative_path();
    parts.insert(parts.begin(), rest.begin(), rest.end());
  }
}

}  // namespace

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

bool isLink(const Path& path) {
  std::error_code unknown;
  return std::filesystem::is_symlink(path, unknown);
}

void requireUnbrokenLink(FileSystem& files, const Path& path) {
  if (!isLink(path)) return;
  if (!withPath(path, [&] { return files.folderExists(path) || files.fileExists(path); })) {
    throw Problem::ofFile(path, "This link leads nowhere.");
  }
}

Path outputTarget(const Path& path) {
  std::error_code unknown;
  requireHarmlessLinks(std::filesystem::absolute(path, unknown));
  return withoutLinks(path);
}

}  // namespace quorrix
