#include "platform/windows/windows_command_shell.h"

#include <windows.h>

#include <shellapi.h>

#include <string>

#include "platform/failure.h"
#include "platform/percent_encoding.h"
#include "platform/windows/wide_text.h"

namespace quorrix {
namespace {

bool endsArgument(char character) {
  return isBlankOrControl(character) || character == '"' || character == '\\';
}

}  // namespace

std::string asOneArgument(const CodePage& codePage, std::string_view address) {
  return percentEncoded(codePage.toUtf8(address), endsArgument);
}

void WindowsCommandShell::run(std::string_view line) {
  const std::wstring address =
      wideFromUtf8(asOneArgument(codePage_, line.substr(kStartCommand.size())));
  const auto outcome = reinterpret_cast<INT_PTR>(
      ::ShellExecuteW(nullptr, L"open", address.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  constexpr INT_PTR kLastError = 32;  // larger values mean success
  if (outcome == 0 || outcome == SE_ERR_OOM) throw Failure(failure::kOutOfMemory);
  if (outcome <= kLastError) throw Failure(failure::kFileNotFound);
}

}  // namespace quorrix
