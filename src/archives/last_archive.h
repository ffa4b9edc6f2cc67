// load.txt in the data folder: one line that names the archive loaded last, shown at the
// next start. Each function replaces the file, and fails with kFileNotFound if it is
// missing.
#pragma once

#include "platform/file_system.h"
#include "shell/app_paths.h"

namespace quorrix {

// Call after archiving: from then on the display holds only sites recorded since.
void rememberNoArchive(FileSystem& files, const AppPaths& paths);

// Call after loading. `folder` is the archive's full path.
void rememberArchive(FileSystem& files, const AppPaths& paths, const Path& folder);

}  // namespace quorrix
