#include "shell/app_paths.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(AppPaths, PutOneSeparatorBehindTheProgramsFolder) {
  EXPECT_EQ(AppPaths("/opt/Quorrix").appPath("Data").generic_string(), "/opt/Quorrix/Data");
}

TEST(AppPaths, AddNoSecondSeparatorBehindARoot) {
  EXPECT_EQ(AppPaths("/").appPath("Data").generic_string(), "/Data");
}

TEST(AppPaths, AddNoSecondSeparatorBehindAFolderThatEndsInOne) {
  EXPECT_EQ(AppPaths("/opt/Quorrix/").appPath("Data").generic_string(), "/opt/Quorrix/Data");
}

TEST(AppPaths, KeepBlanksAndLettersBeyondAsciiAsTheyAre) {
  // Not EXPECT_EQ: packaged builds of GoogleTest cannot print UTF-8 strings.
  EXPECT_TRUE(AppPaths(u8"/home/Zo\u00eb/My Programs").appPath("Quorrix.hlp").generic_u8string() ==
              u8"/home/Zo\u00eb/My Programs/Quorrix.hlp");
}

}  // namespace
}  // namespace quorrix
