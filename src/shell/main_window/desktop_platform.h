// Which of Qt's platforms to run on.
#pragma once

#include <string>

namespace quorrix {

struct DesktopEnvironment {
  bool hasChosenPlatform;  // the user set one
  bool hasWaylandDisplay;
  bool hasX11Display;
};

// What to set QT_QPA_PLATFORM to, or empty for leaving it alone. On Wayland a
// program cannot place its own windows, so XWayland comes first where it is there.
[[nodiscard]] std::string preferredPlatform(const DesktopEnvironment& environment);

}  // namespace quorrix
