// What keeps a user's addresses, notes and passwords from other users of the machine.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The system will write no picture of this process's memory to the disk when it
// crashes, nor let the user's other programs read it. Programs started by this one
// are not affected.
void forbidMemoryDumps();

// Takes from everybody but the owner what rights they have on a folder, as one has
// that was copied or unpacked from elsewhere; the owner's own rights stay. Nothing
// happens where there is no such folder or the system does not allow it. On Windows a
// folder has the rights of the one that it lies in, and this does nothing.
void closeToOthers(const Path& folder);

}  // namespace quorrix
