#include "platform/folder_listing.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

#include "platform/failure.h"
#include "platform/linux/posix_random_access_file.h"

namespace quorrix {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using FolderHandle = std::unique_ptr<DIR, CloseFolder>;

// A missing folder is kPathNotFound, even if its parent folder exists.
FolderHandle openFolder(const Path& path) {
  FolderHandle folder(::opendir(path.c_str()));
  if (folder != nullptr) return folder;
  if (errno == ENOENT) throw Failure(failure::kPathNotFound);
  struct stat status {};
  if (errno == ENOTDIR && ::stat(path.c_str(), &status) == 0) {
    throw Failure(failure::kPathFileAccess);
  }
  failWithErrno(path);
}

// A link counts as its target; a dangling link is not a folder.
bool isFolder(DIR* in, const dirent& entry) {
  if (entry.d_type == DT_DIR) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat status {};
  return ::fstatat(::dirfd(in), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::vector<Path> namesIn(const Path& folder, ListedKind kind) {
  const FolderHandle handle = openFolder(folder);
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* const entry = ::readdir(handle.get())) {
    const std::string_view name = entry->d_name;
    const bool isWanted = isFolder(handle.get(), *entry) == (kind == ListedKind::Folder);
    if (isWanted && name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  if (errno != 0) failWithErrno(folder);
  std::sort(names.begin(), names.end());
  return {names.begin(), names.end()};
}

}  // namespace quorrix
