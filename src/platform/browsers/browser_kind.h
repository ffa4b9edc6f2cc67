// The browsers that are read, and their names.
#pragma once

#include <optional>
#include <string_view>

namespace quorrix {

enum class BrowserKind { Firefox, Chromium, GoogleChrome, GnomeWeb };

// The name that the user knows.
[[nodiscard]] std::string_view nameOf(BrowserKind kind);

}  // namespace quorrix
