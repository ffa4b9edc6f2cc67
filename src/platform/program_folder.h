// Where the program is installed: its data and its help file lie beside it.
// One source per platform, linux/program_folder.cpp and windows/program_folder.cpp.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The folder of the running executable, symbolic links resolved on Linux.
// Throws Failure when the system does not tell.
[[nodiscard]] Path programFolder();

}  // namespace quorrix
