// Tests write paths with "/" between the folders. On Windows the program uses "\\", so
// these functions convert what it shows.
#pragma once

#include <algorithm>
#include <string>

#include "platform/path_text.h"

namespace quorrix::test {

[[nodiscard]] inline std::string withSlashes(std::string text) {
#ifdef _WIN32
  std::replace(text.begin(), text.end(), '\\', '/');
#endif
  return text;
}

// The bytes of a path; on Windows in the system's character set.
[[nodiscard]] inline std::string bytesWithSlashes(const Path& path) {
  return withSlashes(pathText(path));
}

}  // namespace quorrix::test
