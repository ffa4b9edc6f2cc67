#include "platform/path_text.h"

namespace quorrix {

std::string pathText(const Path& path) { return path.native(); }

}  // namespace quorrix
