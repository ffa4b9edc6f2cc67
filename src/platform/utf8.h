// Reads and writes UTF-8, one character at a time.
#pragma once

#include <string>
#include <string_view>

namespace quorrix {

inline constexpr char32_t kMalformed = 0xFFFFFFFF;

// Removes one character from the front of `utf8`, which must not be empty, and returns
// it. If the sequence is malformed, removes only the bytes before the first one that
// cannot belong to it, and returns kMalformed. Malformed means a stray or missing
// continuation byte, an overlong form, a surrogate, or more than U+10FFFF.
[[nodiscard]] char32_t takeCharacter(std::string_view& utf8);

// Appends a character of the basic multilingual plane.
void appendUtf8(std::string& utf8, char16_t character);

[[nodiscard]] bool isUtf8(std::string_view bytes);

}  // namespace quorrix
