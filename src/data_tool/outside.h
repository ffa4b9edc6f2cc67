// Keeps everything that is written out of the folders that are read.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The absolute path without a trailing separator. Throws Problem if `folder` is relative and the
// working folder has been deleted.
[[nodiscard]] Path absoluteFolder(const Path& folder);

// The same with all links resolved.
[[nodiscard]] Path withoutLinks(const Path& path);

// Whether `path` itself is a link.
[[nodiscard]] bool isLink(const Path& path);

// What to write for a path that the user named: withoutLinks(), so that a link stays a link when
// its target is replaced. Throws Problem if `path` is a link that another user made.
[[nodiscard]] Path outputTarget(const Path& path);

// Throws Problem if `target`, which may be missing, is `folder` or inside it, even by links or by
// another spelling, or if the folder around it holds data files.
void requireOutside(FileSystem& files, const Path& target, const Path& folder);

}  // namespace quorrix
