// Which of all the mounts of a Linux system are disks, sticks and network shares
// to a user.
#pragma once

#include <istream>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

// `mounts` is in the form of /proc/self/mountinfo. "/" comes first whatever is said
// there, then the others in the order of their bytes, each once. Left out are the
// kernel's own file systems, memory that nobody mounted for files, layers of
// containers, and what is mounted where only the system itself has business.
[[nodiscard]] std::vector<Path> mountedVolumes(std::istream& mounts);

}  // namespace quorrix
