#include "platform/program_folder.h"

#include <windows.h>

#include <string>

#include "platform/failure.h"
#include "platform/system_errors.h"

namespace quorrix {

Path programFolder() {
  std::wstring executable(MAX_PATH, L'\0');
  for (;;) {
    const auto size = static_cast<DWORD>(executable.size());
    const DWORD length = ::GetModuleFileNameW(nullptr, executable.data(), size);
    if (length == 0) throw Failure(failureNumberOfWindowsError(::GetLastError()));
    if (length < size) {
      executable.resize(length);
      return Path(executable).parent_path();
    }
    executable.resize(executable.size() * 2);  // the path was cut at the buffer's end
  }
}

}  // namespace quorrix
