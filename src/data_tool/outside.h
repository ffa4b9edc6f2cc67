// Keeps everything that is written out of the folders that are read.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The absolute path without a trailing separator.
[[nodiscard]] Path absoluteFolder(const Path& folder);

// The same with all links resolved, so that a link stays a link when its target is replaced.
[[nodiscard]] Path withoutLinks(const Path& path);

// Throws Problem if `target`, which may be missing, is `folder` or inside it, even by links or by
// another spelling, or if it is in any folder that holds data files.
void requireOutside(FileSystem& files, const Path& target, const Path& folder);

}  // namespace quorrix
