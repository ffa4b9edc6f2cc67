#include "platform/command_line.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(ShownPath, IsThePathInUtf8) {
  EXPECT_EQ(shownPath(Path("Archives")), "Archives");
  EXPECT_EQ(shownPath(Path(u8"\u00C9t\u00E9 \u66F8")), "\u00C9t\u00E9 \u66F8");
}

TEST(PathOfArgument, IsThePathThatIsShown) {
  EXPECT_EQ(pathOfArgument("\u00C9t\u00E9"), Path(u8"\u00C9t\u00E9"));
  EXPECT_EQ(shownPath(pathOfArgument("a\u66F8")), "a\u66F8");
}

#ifndef _WIN32

TEST(ShownPath, MarksBytesThatAreNotUtf8) {
  EXPECT_EQ(shownPath(Path("\xC9t\xE9/a")), "\uFFFDt\uFFFD/a");
}

TEST(CommandLineArguments, LeaveOutTheProgramsName) {
  const char* const values[] = {"quorrix-data", "list", "\xC9t\xE9"};
  EXPECT_EQ(commandLineArguments(3, values), (std::vector<std::string>{"list", "\xC9t\xE9"}));
  EXPECT_EQ(commandLineArguments(0, values), std::vector<std::string>{});
}

#endif

}  // namespace
}  // namespace quorrix
