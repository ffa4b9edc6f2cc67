#include "data_tool/file_copy.h"

#include <gtest/gtest.h>

#include <string>

#include "support/memory_file_system.h"

namespace quorrix {
namespace {

constexpr std::size_t kBlock = std::size_t{256} * 1024;

class FileCopyTest : public testing::Test {
 protected:
  FileCopyTest() { files_.givenAFolder("Copy"); }

  void copyOf(const std::string& bytes) {
    files_.givenAFile("nodes.dat", bytes);
    copy_.copy(turns_);
  }

  // Whether the copy could be brought up to date.
  bool catchUpWith(const std::string& bytes, BlockBudget budget = {2}) {
    files_.givenAFile("nodes.dat", bytes);
    return copy_.catchUp(files_.openForReading("nodes.dat").get(), budget);
  }

  test::MemoryFileSystem files_;
  LockTurns turns_{{.patience = std::chrono::milliseconds(0)}};
  FileCopy copy_{files_, "nodes.dat", "Copy/nodes.dat"};
};

TEST_F(FileCopyTest, CopiesFilesOfEveryLength) {
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{1}, kBlock - 1, kBlock, kBlock + 1, 2 * kBlock}) {
    const std::string bytes(length, 'x');
    copyOf(bytes);
    EXPECT_TRUE(catchUpWith(bytes, {0})) << length;
    EXPECT_EQ(files_.bytesOf("Copy/nodes.dat"), bytes);
    copy_.discard();
    EXPECT_FALSE(files_.holdsFile("Copy/nodes.dat"));
  }
}

TEST_F(FileCopyTest, WritesChangedBlocksOnlyWhenAsked) {
  std::string bytes(3 * kBlock, 'x');
  copyOf(bytes);
  bytes[1] = 'a';
  bytes[2 * kBlock] = 'b';
  EXPECT_TRUE(catchUpWith(bytes));
  EXPECT_EQ(files_.bytesOf("Copy/nodes.dat"), std::string(3 * kBlock, 'x'));
  copy_.writeKept();
  EXPECT_EQ(files_.bytesOf("Copy/nodes.dat"), bytes);
  EXPECT_TRUE(catchUpWith(bytes, {0}));
}

TEST_F(FileCopyTest, FollowsAFileThatGrows) {
  copyOf("one");
  EXPECT_TRUE(catchUpWith("one, two"));
  copy_.writeKept();
  EXPECT_EQ(files_.bytesOf("Copy/nodes.dat"), "one, two");
  const std::string longer = "one, two" + std::string(kBlock, 'x');
  EXPECT_TRUE(catchUpWith(longer));
  copy_.writeKept();
  EXPECT_EQ(files_.bytesOf("Copy/nodes.dat"), longer);
}

TEST_F(FileCopyTest, KeepsAsManyBlocksAsTheBudgetAllows) {
  copyOf(std::string(3 * kBlock, 'x'));
  BlockBudget budget{3};
  files_.givenAFile("nodes.dat", std::string(2 * kBlock, 'y') + std::string(kBlock, 'x'));
  EXPECT_TRUE(copy_.catchUp(files_.openForReading("nodes.dat").get(), budget));
  EXPECT_EQ(budget.blocks, 1U);
  EXPECT_FALSE(catchUpWith(std::string(3 * kBlock, 'z'), {2}));
}

TEST_F(FileCopyTest, CannotFollowAFileThatShrinks) {
  copyOf("one, two");
  EXPECT_FALSE(catchUpWith("one"));
  EXPECT_FALSE(catchUpWith(""));
}

TEST_F(FileCopyTest, FollowsAFileThatAppearsButNotOneThatDisappears) {
  copy_.copy(turns_);
  BlockBudget budget{2};
  EXPECT_TRUE(copy_.catchUp(nullptr, budget));
  EXPECT_FALSE(files_.holdsFile("Copy/nodes.dat"));
  EXPECT_TRUE(catchUpWith(""));
  copy_.writeKept();
  EXPECT_EQ(files_.bytesOf("Copy/nodes.dat"), "");
  EXPECT_FALSE(copy_.catchUp(nullptr, budget));
}

TEST_F(FileCopyTest, SyncsTheCopy) {
  copyOf("one");
  copy_.sync();
  EXPECT_TRUE(files_.isSynced("Copy/nodes.dat"));
}

}  // namespace
}  // namespace quorrix
