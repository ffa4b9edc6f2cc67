// How the file systems of all platforms replace a whole file: they write the new content
// to a file with another name in the same folder. Once that has reached the disk, they
// rename it over the old file.
#pragma once

#include <string_view>

#include "platform/file_system.h"

namespace quorrix {

// The name to write under. It is always the same for a given file, so the next
// replacement finds and removes what a crash left.
[[nodiscard]] Path replacementNameOf(const Path& path);

// Whether replacementNameOf() gave `path` its name, probably before a crash.
[[nodiscard]] bool isReplacementName(const Path& path);

void writeCopy(RandomAccessFile& from, RandomAccessFile& into);

[[nodiscard]] bool holdSameBytes(RandomAccessFile& one, RandomAccessFile& other);

// Writes the line and CR LF at the beginning of `into`.
void writeLine(std::string_view line, RandomAccessFile& into);

}  // namespace quorrix
