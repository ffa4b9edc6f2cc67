#include "shell/main_window/desktop_platform.h"

namespace quorrix {

std::string preferredPlatform(const DesktopEnvironment& environment) {
  const bool mayChoose = !environment.hasChosenPlatform && environment.hasWaylandDisplay;
  return mayChoose && environment.hasX11Display ? "xcb;wayland" : "";
}

}  // namespace quorrix
