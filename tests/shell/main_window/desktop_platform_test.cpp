#include "shell/main_window/desktop_platform.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

std::string preferred(bool hasChosenPlatform, bool hasWaylandDisplay, bool hasX11Display) {
  return preferredPlatform({.hasChosenPlatform = hasChosenPlatform,
                            .hasWaylandDisplay = hasWaylandDisplay,
                            .hasX11Display = hasX11Display});
}

TEST(PreferredPlatform, IsXWaylandOnAWaylandDesktopThatHasIt) {
  EXPECT_EQ(preferred(false, true, true), "xcb;wayland");
}

TEST(PreferredPlatform, IsQtsOwnChoiceOnAnyOtherDesktop) {
  EXPECT_EQ(preferred(false, true, false), "");
  EXPECT_EQ(preferred(false, false, true), "");
  EXPECT_EQ(preferred(false, false, false), "");
}

TEST(PreferredPlatform, LeavesTheUsersChoiceAlone) {
  EXPECT_EQ(preferred(true, true, true), "");
  EXPECT_EQ(preferred(true, true, false), "");
  EXPECT_EQ(preferred(true, false, true), "");
  EXPECT_EQ(preferred(true, false, false), "");
}

}  // namespace
}  // namespace quorrix
