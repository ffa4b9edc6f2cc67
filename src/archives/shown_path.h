// Converts between paths, whose bytes are the file system's own, and the text that the
// user reads and types. Only typed text becomes a path; a path that was shown is never
// rebuilt from its text.
#pragma once

#include <QString>
#include <string>

#include "platform/file_system.h"

namespace quorrix {

[[nodiscard]] QString textOfPath(const Path& path);

// On one line: each control character is shown as its symbol.
[[nodiscard]] QString rowTextOfPath(const Path& path);

// The whole path for a message box, in UTF-8.
[[nodiscard]] std::string messageTextOfPath(const Path& path);

// `name` appended to the folder's path with one separator; a root already ends in one. A
// name that begins with a separator is still appended to the folder.
[[nodiscard]] Path joinedPath(const Path& folder, const QString& name);

// The path that the user typed; a path that does not begin at a root begins at `folder`.
// Leading and trailing blanks are ignored. A "~", alone or before a "/" at the beginning,
// is the user's home folder.
[[nodiscard]] Path typedPath(const Path& folder, const QString& text);

}  // namespace quorrix
