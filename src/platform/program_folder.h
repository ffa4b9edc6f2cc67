// Where the program is installed. Its data and its help file are in the same folder.
// There is one source file per platform, linux/program_folder.cpp and
// windows/program_folder.cpp.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The folder of the running executable, on Linux with symbolic links resolved. Throws
// Failure if the system does not report it.
[[nodiscard]] Path programFolder();

}  // namespace quorrix
