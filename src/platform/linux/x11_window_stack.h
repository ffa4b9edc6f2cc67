// How the windows of an X11 desktop lie on each other, which tells the one used last
// where no window of interest is active. XWayland knows of its own windows only.
#pragma once

#include <string>
#include <vector>

namespace quorrix {

// Titles, UTF-8, topmost first; those of minimised windows too. Empty without an X
// display or a window manager that keeps the list.
[[nodiscard]] std::vector<std::string> titlesOfX11WindowStack();

}  // namespace quorrix
