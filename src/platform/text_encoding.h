// The border between the single-byte text that the program keeps (Windows-1252,
// so that a field's width is its length in bytes) and the UTF-8 of the world.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorrix {

// A character without a place in the code page, and every malformed sequence,
// becomes "?".
[[nodiscard]] std::string windows1252FromUtf8(std::string_view utf8);

// nullopt when any character would become "?".
[[nodiscard]] std::optional<std::string> exactWindows1252FromUtf8(std::string_view utf8);

// Whether the bytes are well-formed UTF-8: no stray or missing continuation byte, no
// longer form than needed, no surrogate, no number beyond the last character.
[[nodiscard]] bool isUtf8(std::string_view bytes);

// Every byte has a character: the five unassigned ones are the control
// characters of the same number.
[[nodiscard]] std::string utf8FromWindows1252(std::string_view text);

}  // namespace quorrix
