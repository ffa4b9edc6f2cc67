// Converts between the single-byte text of the logic and Qt's strings, and escapes text
// where Qt would interpret more than its characters.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace quorrix {

[[nodiscard]] QString toQString(std::string_view text);

// A character that is not in the code page becomes "?".
[[nodiscard]] std::string fromQString(const QString& text);

// Decodes a text in the platform's encoding, such as a path read from a file. Valid UTF-8
// is decoded as such, on Windows too, because a data folder may come from Linux. Any
// other text is single-byte text, on Windows in the system's own character set.
[[nodiscard]] QString fromPlatformText(std::string_view text);

// For setToolTip, which interprets text that looks like markup, and would break short
// lines but not a long address. Line breaks are kept; a line of more than 80 characters
// is broken.
[[nodiscard]] QString asToolTip(const QString& text);

// For setWindowTitle, which gives "[*]" a special meaning.
[[nodiscard]] QString asWindowTitle(const QString& text);

}  // namespace quorrix
