#include "support/windows/helper.h"

#include <windows.h>

#include <stdexcept>

#include "platform/program_folder.h"

namespace quorrix::test {

std::filesystem::path helperPath() { return programFolder() / "quorrix_windows_helper.exe"; }

Helper::Helper(const std::wstring& arguments) {
  std::wstring line = L"\"" + helperPath().wstring() + L"\" " + arguments;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION made{};
  if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                        &made)) {
    throw std::runtime_error("the helper program could not be started");
  }
  ::CloseHandle(made.hThread);
  process_ = made.hProcess;
}

Helper::~Helper() {
  constexpr DWORD kPatience = 10000;  // milliseconds
  if (::WaitForSingleObject(process_, 0) != WAIT_OBJECT_0) {
    ::TerminateProcess(process_, 1);
    ::WaitForSingleObject(process_, kPatience);
  }
  ::CloseHandle(process_);
}

}  // namespace quorrix::test
