// All paths of files and folders that the program finds relative to itself come from
// here.
#pragma once

#include <string_view>
#include <utility>

#include "platform/file_system.h"

namespace quorrix {

class AppPaths {
 public:
  explicit AppPaths(Path programFolder) : programFolder_(std::move(programFolder)) {}

  // The program's folder joined with `name` by one separator, even if the program is in a
  // root.
  [[nodiscard]] Path appPath(std::string_view name) const { return programFolder_ / name; }

 private:
  Path programFolder_;
};

}  // namespace quorrix
