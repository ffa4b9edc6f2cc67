// The border between paths, whose bytes are the file system's own, and what the
// user reads and enters. A path that was shown is never made from its text again, only one that was
// typed.
#pragma once

#include <QString>
#include <string>

#include "platform/file_system.h"

namespace quorrix {

[[nodiscard]] QString textOfPath(const Path& path);

// On one line: a control character shows as the sign for it.
[[nodiscard]] QString rowTextOfPath(const Path& path);

// For a message box, whole, in UTF-8.
[[nodiscard]] std::string messageTextOfPath(const Path& path);

// `name` behind the folder's path and one separator, which a root ends in already.
// A name that begins with a separator leads nowhere else.
[[nodiscard]] Path joinedPath(const Path& folder, const QString& name);

// The path that the user typed; one that does not begin at a root begins at `folder`.
// Blanks around it do not count, and "~" at its beginning is the user's home folder.
[[nodiscard]] Path typedPath(const Path& folder, const QString& text);

}  // namespace quorrix
