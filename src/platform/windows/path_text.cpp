#include "platform/path_text.h"

#include <windows.h>

namespace quorrix {

std::string pathText(const Path& path) {
  // No characters that merely resemble those in the path: they may spell another folder's
  // name. A system that is set to UTF-8 does not accept the flag, and has every
  // character.
  const DWORD flags = ::GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
  const std::wstring& wide = path.native();
  const int length = static_cast<int>(wide.size());
  const auto convert = [&](char* into, int size) {
    return ::WideCharToMultiByte(CP_ACP, flags, wide.data(), length, into, size, nullptr, nullptr);
  };
  std::string text(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
  convert(text.data(), static_cast<int>(text.size()));
  return text;
}

}  // namespace quorrix
