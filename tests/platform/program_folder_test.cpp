#include "platform/program_folder.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(ProgramFolder, IsTheWholePathOfAFolder) {
  EXPECT_TRUE(programFolder().is_absolute());
  EXPECT_TRUE(std::filesystem::is_directory(programFolder()));
}

TEST(ProgramFolder, DoesNotFollowThePresentFolder) {
  const auto before = std::filesystem::current_path();
  const Path folder = programFolder();
  std::filesystem::current_path(std::filesystem::temp_directory_path());
  EXPECT_EQ(programFolder(), folder);
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace quorrix
