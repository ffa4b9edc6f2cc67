// Tests write paths with "/" between the folders. On Windows the program puts "\\"
// there, so what it shows is read back through here.
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

// A path's bytes; on Windows in the system's character set.
[[nodiscard]] inline std::string bytesWithSlashes(const Path& path) {
  return withSlashes(pathText(path));
}

}  // namespace quorrix::test
