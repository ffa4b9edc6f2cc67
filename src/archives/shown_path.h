// Converts between paths, whose bytes are the file system's own, and the text that the
// user reads and types. Only typed text becomes a path; a path that was shown is never
// rebuilt from its text.
#pragma once

#include <QString>
#include <string>

#include "platform/file_system.h"

namespace quorrix {

[[nodiscard]] QString textOfPath(const Path& path);

// The path on one line: characters below U+0020 are replaced by their symbols.
[[nodiscard]] QString rowTextOfPath(const Path& path);

// The whole path for a message box, in UTF-8.
[[nodiscard]] std::string messageTextOfPath(const Path& path);

// `name` appended to the folder's path with one separator; a root already ends in one. A
// name that begins with a separator is still appended to the folder.
[[nodiscard]] Path joinedPath(const Path& folder, const QString& name);

// The path that the user typed. A relative path is relative to `folder`. Leading and
// trailing blanks are ignored. "~" and a leading "~/" stand for the home folder.
[[nodiscard]] Path typedPath(const Path& folder, const QString& text);

}  // namespace quorrix
