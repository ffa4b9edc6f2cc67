#include "main_window/browser_launch.h"

#include <gtest/gtest.h>

#include "support/recording_command_shell.h"

namespace quorrix {
namespace {

std::string lineFor(char tag, std::string_view key) {
  test::RecordingCommandShell shell;
  launchSiteInBrowser(shell, tag, key);
  EXPECT_EQ(shell.lines.size(), 1U);
  return shell.lines.back();
}

TEST(BrowserLaunch, UsesTheSchemeOfTheLastVisit) {
  EXPECT_EQ(lineFor('N', "www.one.two/a"), "start http://www.one.two/a");
  EXPECT_EQ(lineFor('S', "www.one.two/a"), "start https://www.one.two/a");
  EXPECT_EQ(lineFor('F', "www.one.two/a"), "start ftp://www.one.two/a");
}

TEST(BrowserLaunch, UsesHttpWhereNoSchemeIsKnown) {
  EXPECT_EQ(lineFor('U', "one.two.three"), "start http://one.two.three");
  EXPECT_EQ(lineFor('\0', "one.two.three"), "start http://one.two.three");
  EXPECT_EQ(lineFor('n', "one.two.three"), "start http://one.two.three");
}

TEST(BrowserLaunch, LeavesTheAddressAsItIs) {
  const std::string hurtful = R"(one.two.three/"a" & b|$(rm)/%0A/`x`/-y)";
  EXPECT_EQ(lineFor('N', hurtful), "start http://" + hurtful);
}

TEST(BrowserLaunch, TakesAnAddressOfWhichNothingMoreIsKnown) {
  test::RecordingCommandShell shell;
  launchURLInBrowser(shell, "one.two.three");
  EXPECT_EQ(shell.lines, std::vector<std::string>{"start http://one.two.three"});
}

}  // namespace
}  // namespace quorrix
