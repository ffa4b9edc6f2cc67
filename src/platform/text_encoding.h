// Converts between the single-byte text that the program keeps (Windows-1252, so that a
// field's width is its length in bytes) and UTF-8, which everything else uses.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorrix {

// Each character that is missing from the code page, and each malformed sequence, becomes
// "?".
[[nodiscard]] std::string windows1252FromUtf8(std::string_view utf8);

// nullopt when any character would become "?".
[[nodiscard]] std::optional<std::string> exactWindows1252FromUtf8(std::string_view utf8);

// Whether the bytes are well-formed UTF-8: no stray or missing continuation byte, no
// overlong form, no surrogate, and nothing above U+10FFFF.
[[nodiscard]] bool isUtf8(std::string_view bytes);

// Every byte has a character: the five unassigned bytes become the control characters
// with the same numbers.
[[nodiscard]] std::string utf8FromWindows1252(std::string_view text);

}  // namespace quorrix
