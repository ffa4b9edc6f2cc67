// Converts between the UTF-16 of Windows and UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace quorrix {

// A lone surrogate becomes U+FFFD.
[[nodiscard]] std::string utf8FromWide(std::wstring_view wide);

[[nodiscard]] std::wstring wideFromUtf8(std::string_view utf8);

}  // namespace quorrix
