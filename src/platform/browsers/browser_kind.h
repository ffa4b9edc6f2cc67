// The browsers that are read, and how each is recognised among the programs of the
// desktop.
#pragma once

#include <optional>
#include <string_view>

namespace quorrix {

enum class BrowserKind { Firefox, Chromium, GoogleChrome, GnomeWeb };

// As the user knows it.
[[nodiscard]] std::string_view nameOf(BrowserKind kind);

}  // namespace quorrix
