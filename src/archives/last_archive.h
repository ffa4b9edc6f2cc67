// load.txt in the data folder: one line that names the archive loaded last, shown at
// the next start. Each function replaces the file, which must be there already:
// without it they fail with kFileNotFound.
#pragma once

#include "platform/file_system.h"
#include "shell/app_paths.h"

namespace quorrix {

// After archiving: the display holds only what was gathered since.
void rememberNoArchive(FileSystem& files, const AppPaths& paths);

// After loading. `folder` is the archive's whole path.
void rememberArchive(FileSystem& files, const AppPaths& paths, const Path& folder);

}  // namespace quorrix
