#include "platform/link_kind.h"

#include <filesystem>

namespace quorrix {

LinkKind linkKindOf(const Path& path) {
  std::error_code unknown;
  return std::filesystem::is_symlink(path, unknown) ? LinkKind::Own : LinkKind::None;
}

}  // namespace quorrix
