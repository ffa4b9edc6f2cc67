#include "platform/link_owner.h"

#include <sys/stat.h>
#include <unistd.h>

namespace quorrix {

bool isLinkOfAnotherUser(const Path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return false;
  return status.st_uid != ::geteuid() && status.st_uid != 0;
}

}  // namespace quorrix
