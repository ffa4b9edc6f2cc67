// Converts between the single-byte text of the logic and Qt's strings, and escapes text
// where Qt would interpret more than its characters.
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <string_view>

#include "platform/code_page.h"

namespace quorrix {

[[nodiscard]] QString toQString(const CodePage& codePage, std::string_view text);

// A character that is not in the code page becomes "?". A letter and its separate marks
// are first composed if the page does not have them apart.
[[nodiscard]] std::string fromQString(const CodePage& codePage, const QString& text);

// nullopt if the text is malformed.
[[nodiscard]] std::optional<QString> fromUtf8(std::string_view text);

// Decodes a path that was read from a file. Valid UTF-8 is decoded as such, on Windows
// too, because a data folder may come from Linux. Any other text is single-byte text, on
// Windows in the system's own character set.
[[nodiscard]] QString fromPlatformText(const CodePage& codePage, std::string_view text);

// For setToolTip, which interprets text that looks like markup, and would break short
// lines but not a long address. Line breaks are kept; a line of more than 80 characters
// is broken.
[[nodiscard]] QString asToolTip(const QString& text);

// For setWindowTitle, which gives "[*]" a special meaning.
[[nodiscard]] QString asWindowTitle(const QString& text);

}  // namespace quorrix
