// What the entry boxes know of the form in which their text is stored: one byte for
// each character, "?" for one without a place in the code page, a line break as CR LF.
#pragma once

#include <QString>
#include <cstddef>
#include <string>

namespace quorrix {

// Of a text as Qt's documents keep it, in which separators break lines.
[[nodiscard]] std::string storedText(const QString& text);

// Of such a text, with "\n" for every kind of line break.
[[nodiscard]] QString inLines(QString text);

// The text as it will be read back from what is stored of it; lines end in "\n".
[[nodiscard]] QString asReadBack(const QString& text);

// The beginning of such a text of which at most `room` characters are stored.
[[nodiscard]] QString cutToStore(const QString& text, std::size_t room);

}  // namespace quorrix
