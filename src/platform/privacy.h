// Keeps the user's addresses, notes and passwords from other users of the machine.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// Prevents the system from writing this process's memory to the disk when it crashes and,
// on Linux, the user's other programs from reading it. Programs started by this one are
// not affected.
void forbidMemoryDumps();

// Removes the rights that anybody but the owner has on a folder, for example one that was
// copied or unpacked from elsewhere. The owner's own rights stay. Does nothing if the
// folder is missing or the system refuses. On Windows a folder has the rights of its
// parent folder, and this does nothing.
void closeToOthers(const Path& folder);

}  // namespace quorrix
