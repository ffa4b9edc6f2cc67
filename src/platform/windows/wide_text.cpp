#include "platform/windows/wide_text.h"

#include <windows.h>

namespace quorrix {

std::string utf8FromWide(std::wstring_view wide) {
  const int length = static_cast<int>(wide.size());
  const int bytes =
      ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

std::wstring wideFromUtf8(std::string_view utf8) {
  const int bytes = static_cast<int>(utf8.size());
  const int length = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), length);
  return wide;
}

}  // namespace quorrix
