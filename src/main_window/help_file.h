// Quorrix.hlp, the manual next to the program: one page of HTML in UTF-8.
#pragma once

#include <cstdint>
#include <string>

#include "platform/file_system.h"

namespace quorrix {

// Many times the size of the manual. A larger file is some other file, and laying it out
// would keep the user waiting.
inline constexpr std::uint64_t kMaxHelpFileBytes = std::uint64_t{4} * 1024 * 1024;

// Returns the page. Throws the Failure of the file system, and kInvalidFileFormat for a
// file that cannot be the manual: an empty file, one larger than kMaxHelpFileBytes, one
// that is not UTF-8 text, or one that another program truncates while it is being read.
[[nodiscard]] std::string readHelpFile(FileSystem& files, const Path& path);

}  // namespace quorrix
