// Finds the mounts of a Linux system that are disks, USB sticks and network shares to a
// user.
#pragma once

#include <istream>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

// `mounts` has the format of /proc/self/mountinfo. "/" comes first, whatever `mounts`
// says, then the others sorted by their bytes, each once. The result omits the kernel's
// own file systems, file systems in memory outside the places for the user's mounts,
// layers of containers, and everything mounted in folders that only the system uses.
[[nodiscard]] std::vector<Path> mountedVolumes(std::istream& mounts);

}  // namespace quorrix
