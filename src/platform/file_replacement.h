// How a file is replaced whole, for the file systems of every platform: the new
// content is written under another name beside the file, and renamed over it once
// it has reached the disk.
#pragma once

#include <string_view>

#include "platform/file_system.h"

namespace quorrix {

// The name to write under. Always the same for a file: what a crash left behind is
// found and removed the next time.
[[nodiscard]] Path replacementNameOf(const Path& path);

void writeCopy(RandomAccessFile& from, RandomAccessFile& into);

// The line and CR LF.
void writeLine(std::string_view line, RandomAccessFile& into);

}  // namespace quorrix
