// A path as the text of a file that other programs of the system can read.
// One source per platform, linux/path_text.cpp and windows/path_text.cpp.
#pragma once

#include <string>

#include "platform/file_system.h"

namespace quorrix {

// The path's own bytes on Linux, in whatever encoding they are; on Windows the
// system's single-byte character set, with "?" for what has no place in it.
[[nodiscard]] std::string pathText(const Path& path);

}  // namespace quorrix
