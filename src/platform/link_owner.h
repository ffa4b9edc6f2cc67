// Who made a link. There is one source file per platform, linux/link_owner.cpp and
// windows/link_owner.cpp.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// Whether `path` is a link that belongs to another user, other than root. It may lead to any of
// this user's files, so nothing may be written through it. Always false on Windows, where only
// administrators make links.
[[nodiscard]] bool isLinkOfAnotherUser(const Path& path);

}  // namespace quorrix
