#include "platform/windows/windows_command_shell.h"

#include <windows.h>

#include <shellapi.h>

#include <string>

#include "platform/failure.h"
#include "platform/windows/wide_text.h"

namespace quorrix {
std::string asOneArgument(const CodePage& codePage, std::string_view address) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string argument;
  for (const char character : codePage.toUtf8(address)) {
    const auto byte = static_cast<unsigned char>(character);
    const bool endsArgument = byte <= ' ' || byte == 0x7F || character == '"' || character == '\\';
    if (!endsArgument) {
      argument += character;
    } else {
      argument += {'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
  }
  return argument;
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
