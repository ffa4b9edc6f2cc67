// What the operating system knows about code pages and letters. There is one source file
// per platform.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quorrix {

// The number of the code page in which this user's text is stored: on Windows the
// system's, on Linux the one that Windows uses for the language of LC_CTYPE. 1252 if that
// page is not a single-byte one.
[[nodiscard]] unsigned systemCodePage();

// The characters of each text in the code page. A letter followed by a mark is composed
// into one character if there is one; for Hebrew only some systems do that. A byte that
// the page does not assign makes its text empty, or is a control or private-use
// character. Throws kFileNotFound if the system lacks the page.
[[nodiscard]] std::vector<std::u16string> decoded(unsigned codePage,
                                                  const std::vector<std::string>& texts);

// The capital or small letter of each character, in no particular locale; a character
// without one stays the same.
[[nodiscard]] std::u16string capitalLetters(std::u16string_view characters);
[[nodiscard]] std::u16string smallLetters(std::u16string_view characters);

}  // namespace quorrix
