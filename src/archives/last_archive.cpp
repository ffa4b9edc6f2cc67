#include "archives/last_archive.h"

#include "platform/path_text.h"

namespace quorrix {
namespace {

Path recordIn(const AppPaths& paths) { return paths.appPath("Data") / "load.txt"; }

}  // namespace

void rememberNoArchive(FileSystem& files, const AppPaths& paths) {
  files.replaceByLine(recordIn(paths), "none");
}

void rememberArchive(FileSystem& files, const AppPaths& paths, const Path& folder) {
  files.replaceByLine(recordIn(paths), pathText(folder));
}

}  // namespace quorrix
