#include "data_tool/outside.h"

#include <filesystem>
#include <system_error>

#include "data_tool/problem.h"

namespace quorrix {

Path absoluteFolder(const Path& folder) {
  const Path absolute = std::filesystem::absolute(folder).lexically_normal();
  return absolute.has_filename() ? absolute : absolute.parent_path();
}

void requireOutside(const Path& target, const Path& folder) {
  std::error_code unknown;
  Path above = std::filesystem::weakly_canonical(std::filesystem::absolute(target), unknown);
  if (unknown) above = std::filesystem::absolute(target).lexically_normal();
  while (true) {
    // False if one of them is missing.
    if (std::filesystem::equivalent(above, folder, unknown)) {
      throw Problem::ofFile(target, "This is in the folder that is read. Name another place.");
    }
    if (above == above.parent_path()) return;
    above = above.parent_path();
  }
}

}  // namespace quorrix
