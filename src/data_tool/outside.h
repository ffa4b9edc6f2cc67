// Keeps everything that is written out of the folders that are read.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// Throws Problem if `target`, which may be missing, is the data folder, a place of its archives or
// a folder that a link there leads to, or inside one of them, even by links or by another spelling.
// Also if the folder around it holds data files.
void requireOutside(FileSystem& files, const Path& target, const Path& dataFolder);

}  // namespace quorrix
