// Converts the text of the entry boxes to and from its stored form: one byte per
// character, "?" for a character that is not in the code page, and CR LF for a line
// break.
#pragma once

#include <QString>
#include <cstddef>
#include <string>

#include "platform/code_page.h"

namespace quorrix {

// The stored form of a text as Qt's documents hold it, in which Unicode separators break
// lines.
[[nodiscard]] std::string storedText(const CodePage& codePage, const QString& text);

// Such a text with "\n" for every kind of line break.
[[nodiscard]] QString inLines(QString text);

// The text as it will be read back once stored; lines end in "\n".
[[nodiscard]] QString asReadBack(const CodePage& codePage, const QString& text);

// The longest beginning of a text that was read back whose stored form has at most `room`
// characters. A letter is not separated from its marks.
[[nodiscard]] QString cutToStore(const CodePage& codePage, const QString& text, std::size_t room);

}  // namespace quorrix
