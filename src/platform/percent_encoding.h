// Percent-encoding, as addresses have it.
#pragma once

#include <string>
#include <string_view>

namespace quorrix {

// The text with "%" and two hexadecimal digits in place of each byte for which `isEncoded` is true.
[[nodiscard]] std::string percentEncoded(std::string_view text, bool (*isEncoded)(char));

// A blank, a control character of ASCII, or NUL.
[[nodiscard]] constexpr bool isBlankOrControl(char character) {
  return static_cast<unsigned char>(character) <= ' ' || character == 0x7F;
}

}  // namespace quorrix
