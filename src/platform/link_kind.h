// What a link may lead to. There is one source file per platform, linux/link_kind.cpp and
// windows/link_kind.cpp.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

enum class LinkKind {
  None,          // not a link, or missing
  Own,           // of this user or root; on Windows, where administrators make links, of anybody
  AnotherUsers,  // it may lead to any of this user's files, so nothing may be written through it
  OpenFile,      // a descriptor of a process, which /dev/stdout leads to
};

// Of `path` itself, whatever it leads to.
[[nodiscard]] LinkKind linkKindOf(const Path& path);

}  // namespace quorrix
