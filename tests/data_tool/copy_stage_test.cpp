#include "data_tool/copy_stage.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "data_tool/folder_copy_stage.h"

namespace quorrix {
namespace {

using test::FileCall;

class CopyStageTest : public test::FolderCopyStage {
 protected:
  const std::vector<std::string> kWithoutArchive{"info.dat", "load.txt", "nodes.dat", "notes.dat",
                                                 "purchases.dat"};

  enum class Target { Missing, EmptyFolder };

  void given(Target target) {
    std::filesystem::remove_all(folder_ / "Copy");
    if (target == Target::EmptyFolder) std::filesystem::create_directory(folder_ / "Copy");
  }

  void expectNothing(Target target) {
    EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy.quorrix-new"));
    if (target == Target::Missing) {
      EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy"));
    } else {
      EXPECT_TRUE(std::filesystem::is_empty(folder_ / "Copy"));
    }
  }

  // How many of the calls make the copy fail.
  int failuresOf(Target target, void (test::FaultyFileSystem::*fail)(int, int)) {
    given(target);
    files_.reset();
    EXPECT_EQ(copy(folder_ / "Copy"), "");
    const auto calls = static_cast<int>(files_.calls().size());
    int failures = 0;
    for (int call = 1; call <= calls; ++call) {
      SCOPED_TRACE(call);
      given(target);
      files_.reset();
      (files_.*fail)(call, 61);
      reported_.clear();
      if (copy(folder_ / "Copy").empty()) {
        // Without the archive if that is what could not be read. The other place has none.
        const std::string place = (folder_ / "Archives").string();
        const bool isWithout = std::ranges::any_of(
            reported_, [&place](const std::string& text) { return text.starts_with(place); });
        EXPECT_EQ(filesIn("Copy"), isWithout ? kWithoutArchive : kAll);
      } else {
        ++failures;
        expectNothing(target);
      }
    }
    return failures;
  }
};

TEST_F(CopyStageTest, TakesAnEmptyFolder) {
  std::filesystem::create_directory(folder_ / "Copy");
  EXPECT_EQ(copy(folder_ / "Copy" / ""), "");
  EXPECT_EQ(filesIn("Copy"), kAll);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy" / "copy.quorrix-new"));
}

// It may be a mounted disk, which can be neither removed nor replaced.
TEST_F(CopyStageTest, FillsAnEmptyFolderAndDoesNotReplaceIt) {
  std::filesystem::create_directory(folder_ / "Copy");
  const Path target = folder_ / "Copy";
  bool isReplaced = false;
  files_.onEveryCall([&] { isReplaced |= !std::filesystem::exists(target); });
  EXPECT_EQ(copy(target), "");
  EXPECT_FALSE(isReplaced);
}

TEST_F(CopyStageTest, PutsTheSitesThereLast) {
  std::filesystem::create_directory(folder_ / "Copy");
  std::vector<std::vector<std::string>> seen;
  files_.onEveryCall([&] {
    if (files_.calls().back() == FileCall::Rename) seen.push_back(filesIn("Copy"));
  });
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  ASSERT_EQ(seen.size(), 6U);
  EXPECT_EQ(seen.back(), (std::vector<std::string>{
                             "Archives/2025/May/info.dat", "Archives/2025/May/nodes.dat",
                             "Archives/2025/May/notes.dat", "Archives/2025/May/purchases.dat",
                             "copy.quorrix-new/nodes.dat", "info.dat", "load.txt", "notes.dat",
                             "purchases.dat"}));
}

TEST_F(CopyStageTest, NeedsTheFolderAboveIt) {
  EXPECT_TRUE(copy(folder_ / "Stick" / "Copy").ends_with("Stick: There is no such folder."));
}

TEST_F(CopyStageTest, NamesTheFolderInWhichNothingCanBeWritten) {
  files_.failAtCall(FileCall::MakeFolder, 1, 75);
  EXPECT_EQ(copy(folder_ / "Copy"),
            folder_.path().string() + ": Nothing can be written in this folder.");
  std::filesystem::create_directory(folder_ / "Copy");
  files_.failAtCall(FileCall::MakeFolder, 1, 75);
  EXPECT_EQ(copy(folder_ / "Copy"),
            (folder_ / "Copy").string() + ": Nothing can be written in this folder.");
  files_.failAtCall(FileCall::MakeFolder, 1, 61);
  EXPECT_EQ(copy(folder_ / "Copy"), (folder_ / "Copy").string() + ": Disk full.");
}

TEST_F(CopyStageTest, RefusesAFolderThatIsNotEmpty) {
  std::filesystem::create_directory(folder_ / "Copy");
  folder_.givenAFile("Copy/mine.txt", "mine");
  EXPECT_TRUE(copy(folder_ / "Copy").ends_with("Copy: This folder is not empty."));
  EXPECT_EQ(filesIn("Copy"), std::vector<std::string>{"mine.txt"});
  EXPECT_TRUE(copy(folder_ / "Copy" / "mine.txt")
                  .ends_with("mine.txt: This is a file. Name a new or empty folder."));
}

TEST_F(CopyStageTest, TakesADiskThatHasOnlyFoldersOfItsFileSystem) {
  std::filesystem::create_directories(folder_ / "Stick" / "lost+found");
  std::filesystem::create_directory(folder_ / "Stick" / "System Volume Information");
  EXPECT_EQ(copy(folder_ / "Stick"), "");
  EXPECT_EQ(filesIn("Stick"), kAll);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "Stick" / "lost+found"));
}

TEST_F(CopyStageTest, LeavesAnUnfinishedCopyToTheUser) {
  std::filesystem::create_directory(folder_ / "Copy.quorrix-new");
  EXPECT_TRUE(copy(folder_ / "Copy")
                  .ends_with("Copy.quorrix-new: This folder belongs to a copy that is running or "
                             "was interrupted. If "
                             "it was interrupted, remove the folder and try again."));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "Copy.quorrix-new"));
  std::filesystem::create_directories(folder_ / "Stick" / "copy.quorrix-new");
  EXPECT_TRUE(copy(folder_ / "Stick")
                  .ends_with("copy.quorrix-new: This folder belongs to a copy that is running or "
                             "was interrupted. If "
                             "it was interrupted, remove the folder and try again."));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "Stick" / "copy.quorrix-new"));
}

TEST_F(CopyStageTest, LeavesNothingIfACallFails) {
  EXPECT_GT(failuresOf(Target::Missing, &test::FaultyFileSystem::failAtCall), 40);
  EXPECT_GT(failuresOf(Target::EmptyFolder, &test::FaultyFileSystem::failAtCall), 40);
}

TEST_F(CopyStageTest, LeavesNothingIfACallTakesEffectAndFails) {
  EXPECT_GT(failuresOf(Target::Missing, &test::FaultyFileSystem::failAfterCall), 20);
  EXPECT_GT(failuresOf(Target::EmptyFolder, &test::FaultyFileSystem::failAfterCall), 20);
}

#ifndef _WIN32
TEST_F(CopyStageTest, CopiesToWhereALinkLeads) {
  std::filesystem::create_directory(folder_ / "Stick");
  std::filesystem::create_directory_symlink("Stick", folder_ / "Link");
  EXPECT_EQ(copy(folder_ / "Link"), "");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_ / "Link"));
  EXPECT_EQ(filesIn("Stick"), kAll);
  std::filesystem::create_directory_symlink("nowhere", folder_ / "Dangling");
  EXPECT_TRUE(copy(folder_ / "Dangling")
                  .ends_with("Dangling: This is a link to a folder that is missing."));
}
#endif

}  // namespace
}  // namespace quorrix
