#include "platform/console.h"

#include <windows.h>

#include <algorithm>

#include "platform/failure.h"
#include "platform/system_errors.h"

namespace quorrix {
namespace {

// A console of an older Windows refuses more in one call.
constexpr std::size_t kLongestWrite = 16 * 1024;

constexpr int kStatusOfError = 2;

// Returns 0, or the GetLastError() value of the failure.
DWORD writeTo(DWORD handle, std::string_view text) {
  const HANDLE output = ::GetStdHandle(handle);
  while (!text.empty()) {
    const auto size = static_cast<DWORD>(std::min(text.size(), kLongestWrite));
    DWORD count = 0;
    if (!::WriteFile(output, text.data(), size, &count, nullptr)) return ::GetLastError();
    if (count == 0) return ERROR_DISK_FULL;
    text.remove_prefix(count);
  }
  return 0;
}

bool hasReaderLeft(DWORD reason) {
  return reason == ERROR_BROKEN_PIPE || reason == ERROR_NO_DATA ||
         reason == ERROR_PIPE_NOT_CONNECTED;
}

}  // namespace

Console::Console() : earlierCodePage_(::GetConsoleOutputCP()) { ::SetConsoleOutputCP(CP_UTF8); }

Console::~Console() {
  if (earlierCodePage_ != 0) ::SetConsoleOutputCP(earlierCodePage_);
}

void Console::write(std::string_view text) {
  const DWORD reason = writeTo(STD_OUTPUT_HANDLE, text);
  if (hasReaderLeft(reason)) throw ReaderLeft();
  if (reason != 0) throw Failure(failureNumberOfWindowsError(reason));
}

void Console::writeError(std::string_view text) noexcept {
  static_cast<void>(writeTo(STD_ERROR_HANDLE, text));
}

std::optional<std::size_t> Console::terminalWidth() {
  CONSOLE_SCREEN_BUFFER_INFO buffer{};
  if (!::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &buffer)) {
    return std::nullopt;
  }
  // A line that fills the last column is followed by an empty one.
  const int width = buffer.srWindow.Right - buffer.srWindow.Left;
  return width > 0 ? std::optional<std::size_t>(width) : std::nullopt;
}

int Console::endAfterReaderLeft() { return kStatusOfError; }

}  // namespace quorrix
