#include "platform/path_text.h"

#include <windows.h>

namespace quorrix {

std::string pathText(const Path& path) {
  const std::wstring& wide = path.native();
  const int length = static_cast<int>(wide.size());
  const auto convert = [&](char* into, int size) {
    return ::WideCharToMultiByte(CP_ACP, 0, wide.data(), length, into, size, nullptr, nullptr);
  };
  std::string text(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
  convert(text.data(), static_cast<int>(text.size()));
  return text;
}

}  // namespace quorrix
