#include "platform/command_line.h"

#include <windows.h>

// Needs windows.h.
#include <shellapi.h>

#include "platform/windows/wide_text.h"

namespace quorrix {

// The arguments of main() are in the system's code page, which lacks most characters.
std::vector<std::string> commandLineArguments(int /*count*/, const char* const* /*values*/) {
  int count = 0;
  wchar_t** const values = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; values != nullptr && i < count; ++i) arguments.push_back(utf8FromWide(values[i]));
  ::LocalFree(values);
  return arguments;
}

Path pathOfArgument(const std::string& argument) { return wideFromUtf8(argument); }

std::string shownPath(const Path& path) { return utf8FromWide(path.native()); }

}  // namespace quorrix
