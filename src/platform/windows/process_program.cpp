#include "platform/windows/process_program.h"

#include <string>

namespace quorrix {

Path programOf(DWORD process) {
  const HANDLE handle = ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
  if (handle == nullptr) return {};
  std::wstring path(32 * 1024, L'\0');
  auto length = static_cast<DWORD>(path.size());
  const bool isKnown = ::QueryFullProcessImageNameW(handle, 0, path.data(), &length) != 0;
  ::CloseHandle(handle);
  path.resize(isKnown ? length : 0);
  return path;
}

}  // namespace quorrix
