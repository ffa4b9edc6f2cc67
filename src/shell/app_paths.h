// Every file and folder that the program names relative to itself goes through here.
#pragma once

#include <string_view>
#include <utility>

#include "platform/file_system.h"

namespace quorrix {

class AppPaths {
 public:
  explicit AppPaths(Path programFolder) : programFolder_(std::move(programFolder)) {}

  // The program's folder joined with `name`, by one separator also when the
  // program sits in a root.
  [[nodiscard]] Path appPath(std::string_view name) const { return programFolder_ / name; }

 private:
  Path programFolder_;
};

}  // namespace quorrix
