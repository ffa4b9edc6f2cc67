// Paths as the user names them, and where their links lead.
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

// Throws Problem if `path` itself is a link whose target is missing or cannot be reached.
void requireUnbrokenLink(FileSystem& files, const Path& path);

// What to write for a path that the user named: withoutLinks(), so that a link stays a link when
// its target is replaced. Throws Problem if a link on the way was made by another user, or stands
// for an open file, such as /dev/stdout.
[[nodiscard]] Path outputTarget(const Path& path);

}  // namespace quorrix
