#include "platform/command_line.h"

#include "platform/utf8.h"

namespace quorrix {

std::vector<std::string> commandLineArguments(int count, const char* const* values) {
  if (count < 1) return {};
  return {values + 1, values + count};
}

Path pathOfArgument(const std::string& argument) { return argument; }

std::string shownPath(const Path& path) {
  constexpr char16_t kReplacement = 0xFFFD;
  std::string shown;
  for (std::string_view rest = path.native(); !rest.empty();) {
    const std::string_view before = rest;
    if (takeCharacter(rest) == kMalformed) {
      appendUtf8(shown, kReplacement);
    } else {
      shown += before.substr(0, before.size() - rest.size());
    }
  }
  return shown;
}

}  // namespace quorrix
