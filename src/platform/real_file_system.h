// The file system of the platform that the program is built for.
#pragma once

#ifdef _WIN32
#include "platform/windows/windows_file_system.h"
#else
#include "platform/linux/posix_file_system.h"
#endif

namespace quorrix {

#ifdef _WIN32
using RealFileSystem = WindowsFileSystem;
#else
using RealFileSystem = PosixFileSystem;
#endif

}  // namespace quorrix
