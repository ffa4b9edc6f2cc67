// Text for people: on a terminal and in tables.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quorrix {

// The text with every character that a terminal could take for a command, or that changes the
// direction of the text around it, written as "\xNN" or "\u{N...}". Line breaks are escaped, too.
// A malformed sequence becomes U+FFFD.
[[nodiscard]] std::string escapedText(std::string_view utf8);

// The text with every control character but tabs and line breaks written as "\xNN". A malformed
// sequence becomes U+FFFD.
[[nodiscard]] std::string escapedControls(std::string_view utf8);

// How many columns of a terminal the text takes. It has no control characters.
[[nodiscard]] std::size_t columnsOf(std::string_view utf8);

// As much of the text as fits into so many columns; a text that is cut ends with "…".
[[nodiscard]] std::string cutToColumns(std::string_view utf8, std::size_t columns);

// The text, followed by blanks up to so many columns.
[[nodiscard]] std::string paddedTo(std::string text, std::size_t columns);

}  // namespace quorrix
