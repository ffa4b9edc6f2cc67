// Quorrix.hlp, the manual that lies beside the program: one page of HTML in UTF-8.
#pragma once

#include <cstdint>
#include <string>

#include "platform/file_system.h"

namespace quorrix {

// Many times what the manual needs. What is larger is some other file, and laying it
// out would keep the user waiting.
inline constexpr std::uint64_t kMaxHelpFileBytes = std::uint64_t{4} * 1024 * 1024;

// The page. Throws the Failure of the file system, and kInvalidFileFormat for what cannot
// be the manual: an empty file, one larger than kMaxHelpFileBytes, one that is not UTF-8
// text, and one that another program cuts while it is being read.
[[nodiscard]] std::string readHelpFile(FileSystem& files, const Path& path);

}  // namespace quorrix
