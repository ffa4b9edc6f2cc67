#include "platform/browsers/played_windows.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "support/code_pages.h"

namespace quorrix {
namespace {

class PlayedWindowsTest : public testing::Test {
 protected:
  void givenTwoWindows() {
    windows_.beginPass();
    windows_.add("News \xE2\x80\x94 Mozilla Firefox");
    windows_.add("Maps - Chromium");
  }

  std::string textOf(WindowHandle handle) {
    std::array<char, 100> buffer{};
    return {buffer.data(), windows_.GetWindowTextA(handle, buffer)};
  }

  std::string classOf(WindowHandle handle) {
    std::array<char, 100> buffer{};
    return {buffer.data(), windows_.GetClassNameA(handle, buffer)};
  }

  WindowHandle combo() const {
    return windows_.GetWindow(windows_.frame(0), WindowRelation::FirstChild);
  }
  WindowHandle edit() const { return windows_.GetWindow(combo(), WindowRelation::FirstChild); }
  WindowHandle statusBar() const {
    return windows_.GetWindow(combo(), WindowRelation::NextSibling);
  }

  PlayedWindows windows_{test::westernCodePage()};
};

TEST_F(PlayedWindowsTest, HaveTheBrowsersNamesAndTheOneThatTheScanKnows) {
  givenTwoWindows();
  EXPECT_EQ(windows_.count(), 2U);
  EXPECT_EQ(textOf(windows_.frame(0)), "News \x97 Mozilla Firefox - Netscape");
  EXPECT_EQ(textOf(windows_.frame(1)), "Maps - Chromium - Netscape");
}

TEST_F(PlayedWindowsTest, HaveAnAddressBoxAndAStatusBar) {
  givenTwoWindows();
  windows_.showInFront({.address = "http://one.two.three/a", .isVisit = true});
  EXPECT_EQ(classOf(combo()), "ComboBox");
  EXPECT_EQ(classOf(edit()), "Edit");
  EXPECT_EQ(classOf(statusBar()), "msctls_statusbar32");
  EXPECT_EQ(textOf(edit()), "http://one.two.three/a");
  EXPECT_EQ(textOf(statusBar()), "Connect: one.two.three");
  EXPECT_EQ(windows_.GetParent(edit()), combo());
  EXPECT_EQ(windows_.GetParent(combo()), windows_.frame(0));
  EXPECT_EQ(windows_.GetParent(windows_.frame(0)), kNoWindow);
}

TEST_F(PlayedWindowsTest, ReportNoVisitWithoutOne) {
  givenTwoWindows();
  windows_.showInFront({.address = "http://one.two.three/a", .isVisit = false});
  EXPECT_EQ(textOf(statusBar()), "Done");
}

TEST_F(PlayedWindowsTest, KnowNoHandleOfAnEarlierPass) {
  givenTwoWindows();
  const WindowHandle earlier = windows_.frame(0);
  givenTwoWindows();
  EXPECT_NE(windows_.frame(0), earlier);
  EXPECT_EQ(textOf(earlier), "");
  EXPECT_TRUE(PlayedWindows::owns(earlier));
}

TEST_F(PlayedWindowsTest, EndTheirTextsWithANul) {
  givenTwoWindows();
  std::array<char, 40> buffer;
  buffer.fill('x');
  EXPECT_EQ(windows_.GetWindowTextA(windows_.frame(1), buffer), 26U);
  EXPECT_STREQ(buffer.data(), "Maps - Chromium - Netscape");
}

TEST_F(PlayedWindowsTest, LoseTheMiddleOfATitleThatIsTooLong) {
  givenTwoWindows();
  std::array<char, 20> buffer{};
  EXPECT_EQ(windows_.GetWindowTextA(windows_.frame(1), buffer), 19U);
  EXPECT_STREQ(buffer.data(), "Maps - Chr Netscape");
}

TEST_F(PlayedWindowsTest, HaveHandlesThatNoWindowOfTheSystemHas) {
  givenTwoWindows();
  EXPECT_TRUE(PlayedWindows::owns(windows_.frame(1)));
  EXPECT_TRUE(PlayedWindows::owns(statusBar()));
  EXPECT_FALSE(PlayedWindows::owns(0xFFFF'FFFF));  // handles of user32 have 32 bits
  EXPECT_FALSE(PlayedWindows::owns(kNoWindow));
}

}  // namespace
}  // namespace quorrix
