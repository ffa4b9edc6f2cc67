// The program that a process runs.
#pragma once

#include <windows.h>

#include "platform/file_system.h"

namespace quorrix {

// The path of the program's file; empty if the process is gone or may not be asked.
[[nodiscard]] Path programOf(DWORD process);

}  // namespace quorrix
