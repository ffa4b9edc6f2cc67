#include "archives/last_archive.h"

#include <gtest/gtest.h>

#include "platform/real_file_system.h"
#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using test::failureNumberOf;
using test::kFileFailures;

class LastArchiveTest : public testing::Test {
 protected:
  LastArchiveTest() { memory_.givenAFile("Quorrix/Data/load.txt", "/earlier/and/longer\r\nmore"); }

  const std::string& bytes() { return memory_.bytesOf("Quorrix/Data/load.txt"); }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  AppPaths paths_{"Quorrix"};
};

TEST_F(LastArchiveTest, IsNoneAfterArchiving) {
  rememberNoArchive(files_, paths_);
  EXPECT_EQ(bytes(), "none\r\n");
}

TEST_F(LastArchiveTest, IsTheFoldersPathAfterLoading) {
  rememberArchive(files_, paths_, "/home/me/Quorrix/Archives/May 2026 ");
  EXPECT_EQ(bytes(), "/home/me/Quorrix/Archives/May 2026 \r\n");
  EXPECT_EQ(files_.readFirstLine("Quorrix/Data/load.txt"), "/home/me/Quorrix/Archives/May 2026 ");
}

TEST_F(LastArchiveTest, IsNotRememberedWithoutItsFile) {
  memory_.deleteFile("Quorrix/Data/load.txt");
  EXPECT_EQ(failureNumberOf([this] { rememberNoArchive(files_, paths_); }), 53);
  EXPECT_EQ(failureNumberOf([this] { rememberArchive(files_, paths_, "/May"); }), 53);
  EXPECT_FALSE(memory_.holdsFile("Quorrix/Data/load.txt"));
}

TEST_F(LastArchiveTest, StaysWhenItsFileIsReadOnly) {
  memory_.givenAReadOnlyFile("Quorrix/Data/load.txt", "none\r\n");
  EXPECT_EQ(failureNumberOf([this] { rememberArchive(files_, paths_, "/May"); }), 75);
  EXPECT_EQ(bytes(), "none\r\n");
}

TEST_F(LastArchiveTest, StaysWhenItCannotBeReplaced) {
  for (const int number : kFileFailures) {
    files_.reset();
    files_.failAtCall(1, number);
    EXPECT_EQ(failureNumberOf([this] { rememberNoArchive(files_, paths_); }), number);
    files_.failAtCall(1, number);
    EXPECT_EQ(failureNumberOf([this] { rememberArchive(files_, paths_, "/May"); }), number);
    EXPECT_EQ(bytes(), "/earlier/and/longer\r\nmore");
  }
}

TEST_F(LastArchiveTest, IsWrittenToARealFile) {
  const test::TemporaryFolder folder;
  RealFileSystem real;
  real.makeFolder(folder / "Data");
  folder.givenAFile(Path("Data") / "load.txt", "none\n");
  rememberArchive(real, AppPaths(folder.path()), "/Archives/May");
  EXPECT_EQ(folder.bytesOf(Path("Data") / "load.txt"), "/Archives/May\r\n");
  rememberNoArchive(real, AppPaths(folder.path()));
  EXPECT_EQ(folder.bytesOf(Path("Data") / "load.txt"), "none\r\n");
}

}  // namespace
}  // namespace quorrix
