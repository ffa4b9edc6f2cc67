// The arguments of the command line, and paths in them. There is one source file per
// platform, linux/command_line.cpp and windows/command_line.cpp.
#pragma once

#include <string>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

// The arguments after the program's name: on Linux as they are, on Windows in UTF-8.
[[nodiscard]] std::vector<std::string> commandLineArguments(int count, const char* const* values);

// The path that an argument names.
[[nodiscard]] Path pathOfArgument(const std::string& argument);

// A path or a file name as UTF-8, for showing it. On Linux, bytes that are not UTF-8 become
// U+FFFD; on Windows, a lone surrogate does.
[[nodiscard]] std::string shownPath(const Path& path);

}  // namespace quorrix
