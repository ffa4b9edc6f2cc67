#include "platform/program_folder.h"

#include <windows.h>

#include <string>
#include <utility>

#include "platform/failure.h"
#include "platform/system_errors.h"

namespace quorrix {

namespace {

// A command line may have named the drive by a small letter. The list of drives, and
// every path that the user is shown, have capital letters.
std::wstring withCapitalDrive(std::wstring path) {
  const bool isSmall = path.size() > 1 && path[1] == L':' && path[0] >= L'a' && path[0] <= L'z';
  if (isSmall) path[0] = static_cast<wchar_t>(path[0] - L'a' + L'A');
  return path;
}

}  // namespace

Path programFolder() {
  std::wstring executable(MAX_PATH, L'\0');
  for (;;) {
    const auto size = static_cast<DWORD>(executable.size());
    const DWORD length = ::GetModuleFileNameW(nullptr, executable.data(), size);
    if (length == 0) throw Failure(failureNumberOfWindowsError(::GetLastError()));
    if (length < size) {
      executable.resize(length);
      return Path(withCapitalDrive(std::move(executable))).parent_path();
    }
    executable.resize(executable.size() * 2);  // the path was truncated
  }
}

}  // namespace quorrix
