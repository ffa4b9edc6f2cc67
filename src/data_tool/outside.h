// Keeps everything that is written out of the folders that are read.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The absolute path without a trailing separator.
[[nodiscard]] Path absoluteFolder(const Path& folder);

// Throws Problem if `target`, which may be missing, is `folder` or inside of it, also by links or
// by another spelling.
void requireOutside(const Path& target, const Path& folder);

}  // namespace quorrix
