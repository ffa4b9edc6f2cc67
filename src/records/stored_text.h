// Converts the text of the entry boxes to and from its stored form: one byte per
// character, "?" for a character that is not in the code page, and CR LF for a line
// break.
#pragma once

#include <QString>
#include <cstddef>
#include <string>

namespace quorrix {

// The stored form of a text as Qt's documents hold it, in which Unicode separators break
// lines.
[[nodiscard]] std::string storedText(const QString& text);

// Such a text with "\n" for every kind of line break.
[[nodiscard]] QString inLines(QString text);

// The text as it will be read back once stored; lines end in "\n".
[[nodiscard]] QString asReadBack(const QString& text);

// The longest beginning of such a text whose stored form has at most `room` characters.
[[nodiscard]] QString cutToStore(const QString& text, std::size_t room);

}  // namespace quorrix
