// What the entry boxes know of the form in which their text is stored: one byte for
// each character, a line break as CR LF.
#pragma once

#include <QString>
#include <cstddef>
#include <string>

namespace quorrix {

// A text as Qt's documents keep it, in which separators break lines.
[[nodiscard]] std::string storedText(QString text);

// Where `text` is to be cut before `end`, a place in it, so that at least `excess`
// characters fewer are stored; 0 when that is not to be had.
[[nodiscard]] qsizetype startOfExcess(const QString& text, qsizetype end, std::size_t excess);

}  // namespace quorrix
