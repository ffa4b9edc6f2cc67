// A path as text in a file that other programs on the system can read. There is one
// source file per platform, linux/path_text.cpp and windows/path_text.cpp.
#pragma once

#include <string>

#include "platform/file_system.h"

namespace quorrix {

// On Linux the path's own bytes, in whatever encoding; on Windows the path in the
// system's ANSI code page, with "?" for characters that it lacks.
[[nodiscard]] std::string pathText(const Path& path);

}  // namespace quorrix
