// The border between the single-byte text of the logic and Qt's strings, and
// the places where Qt would read more into a text than its characters.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace quorrix {

[[nodiscard]] QString toQString(std::string_view text);

// A character without a place in the code page becomes "?".
[[nodiscard]] std::string fromQString(const QString& text);

// A text in the platform's encoding, such as a path that was written down:
// UTF-8, which a data folder from Linux has on Windows, too; where it is not valid
// UTF-8, single-byte text, on Windows that of the system's own character set.
[[nodiscard]] QString fromPlatformText(std::string_view text);

// For setToolTip, which takes text that looks like markup for markup, and would break short
// lines but not a long address. Lines stay lines; one of more than 80 characters is broken.
[[nodiscard]] QString asToolTip(const QString& text);

// For setWindowTitle, which gives "[*]" a meaning of its own.
[[nodiscard]] QString asWindowTitle(const QString& text);

}  // namespace quorrix
