#include "platform/privacy.h"

#include <windows.h>

namespace quorrix {

// The box in which the system offers to report a crash is what writes the dump.
void forbidMemoryDumps() {
  ::SetErrorMode(::GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
}

void closeToOthers(const Path& /*folder*/) {}

}  // namespace quorrix
