#include "support/windows/msaa_browser.h"

#include <windows.h>

#include <stdexcept>

#include "platform/program_folder.h"

namespace quorrix::test {
namespace {

constexpr DWORD kPatience = 10000;  // milliseconds

// One end is inherited by the program that is started, the other is not.
struct Pipe {
  explicit Pipe(bool isInheritedForReading) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    if (!::CreatePipe(&read, &write, &inherited, 0)) throw std::runtime_error("no pipe");
    ::SetHandleInformation(isInheritedForReading ? write : read, HANDLE_FLAG_INHERIT, 0);
  }
  HANDLE read = nullptr;
  HANDLE write = nullptr;
};

}  // namespace

MsaaBrowser::MsaaBrowser(StandInFor browser, const std::filesystem::path& profile) {
  const auto program = folder_.path() / (browser == StandInFor::Firefox    ? "firefox.exe"
                                         : browser == StandInFor::Chromium ? "chrome.exe"
                                                                           : "electron.exe");
  std::filesystem::copy_file(programFolder() / "quorrix_msaa_browser.exe", program);
  std::wstring line = L"\"" + program.wstring() + L"\"";
  if (!profile.empty()) line += L" -profile \"" + profile.wstring() + L"\"";
  const Pipe commands(true);
  const Pipe answers(false);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = commands.read;
  start.hStdOutput = answers.write;
  PROCESS_INFORMATION made{};
  if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                        &made)) {
    throw std::runtime_error("the stand-in could not be started");
  }
  ::CloseHandle(made.hThread);
  ::CloseHandle(commands.read);
  ::CloseHandle(answers.write);
  process_ = made.hProcess;
  commands_ = commands.write;
  answers_ = answers.read;
  tell("calls");
}

MsaaBrowser::~MsaaBrowser() {
  kill();
  ::CloseHandle(commands_);
  ::CloseHandle(answers_);
  ::CloseHandle(process_);
}

std::string MsaaBrowser::tell(const std::string& command) {
  const std::string line = command + '\n';
  DWORD written = 0;
  if (!::WriteFile(commands_, line.data(), static_cast<DWORD>(line.size()), &written, nullptr)) {
    throw std::runtime_error("the stand-in takes no command");
  }
  return readLine();
}

std::string MsaaBrowser::readLine() const {
  std::string line;
  char character = '\0';
  DWORD count = 0;
  while (::ReadFile(answers_, &character, 1, &count, nullptr) && count == 1) {
    if (character == '\n') return line;
    if (character != '\r') line += character;
  }
  throw std::runtime_error("the stand-in has ended");
}

void MsaaBrowser::kill() {
  if (::WaitForSingleObject(process_, 0) == WAIT_OBJECT_0) return;
  ::TerminateProcess(process_, 1);
  ::WaitForSingleObject(process_, kPatience);
}

}  // namespace quorrix::test
