#include "platform/privacy.h"

#include <sys/prctl.h>
#include <sys/stat.h>

namespace quorrix {

// The limit on core files is not enough: it does not apply if the system passes cores to
// a program, and the browser that is started for a link would inherit it.
void forbidMemoryDumps() { ::prctl(PR_SET_DUMPABLE, 0); }

void closeToOthers(const Path& folder) {
  struct stat status {};
  if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return;
  if ((status.st_mode & (S_IRWXG | S_IRWXO)) == 0) return;
  ::chmod(folder.c_str(), status.st_mode & S_IRWXU);
}

}  // namespace quorrix
