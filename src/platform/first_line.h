// The first line of a text file, for the file systems of every platform.
#pragma once

#include <string>

#include "platform/file_system.h"

namespace quorrix {

// The bytes before the first LF or CR, or before the end of the file. A line of
// more than 64 KiB is cut off there.
[[nodiscard]] std::string firstLineOf(RandomAccessFile& file);

}  // namespace quorrix
