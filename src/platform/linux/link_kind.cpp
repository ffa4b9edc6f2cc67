#include "platform/link_kind.h"

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace quorrix {
namespace {

bool isDescriptor(const Path& path) {
  const Path folder = path.parent_path();
  struct statfs system {};
  return folder.filename() == "fd" && ::statfs(folder.c_str(), &system) == 0 &&
         system.f_type == PROC_SUPER_MAGIC;
}

}  // namespace

LinkKind linkKindOf(const Path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return LinkKind::None;
  if (isDescriptor(path)) return LinkKind::OpenFile;
  const bool isOwn = status.st_uid == ::geteuid() || status.st_uid == 0;
  return isOwn ? LinkKind::Own : LinkKind::AnotherUsers;
}

}  // namespace quorrix
