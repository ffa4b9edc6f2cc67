// Text inside HTML.
#pragma once

#include <string>
#include <string_view>

namespace quorrix {

// The text as an element's content or as an attribute's value in quotes. Control characters and
// those that change the direction of text are shown as escapedText() shows them.
[[nodiscard]] std::string htmlText(std::string_view utf8);

// The same for a text of several lines, which are separated by CR LF or LF. Lines end with LF.
[[nodiscard]] std::string htmlLines(std::string_view utf8);

// An address as the value of "href". Blanks and control characters are percent-encoded.
[[nodiscard]] std::string htmlAddress(std::string_view utf8);

}  // namespace quorrix
