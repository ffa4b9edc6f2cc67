#include "platform/privacy.h"

#include <windows.h>

namespace quorrix {

// The system writes the dump from the box in which it offers to report a crash.
void forbidMemoryDumps() {
  ::SetErrorMode(::GetErrorMode() | SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
}

void closeToOthers(const Path& /*folder*/) {}

}  // namespace quorrix
