#include "data_tool/folder_copy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "data_tool/problem.h"
#include "platform/real_file_system.h"
#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

class FolderCopyTest : public testing::Test {
 protected:
  FolderCopyTest() {
    for (const char* name : {"Data", "Archives/2025/May"}) {
      std::filesystem::create_directories(folder_ / name);
      for (const char* file : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
        folder_.givenAFile(Path(name) / file, std::string(name) + " " + file);
      }
    }
    folder_.givenAFile("Data/load.txt", "none\r\n");
  }

  std::string copy(const Path& target) {
    try {
      copyFolders(files_, folder_ / "Data", Archives::Include, target,
                  std::chrono::milliseconds(0));
    } catch (const Problem& problem) {
      return problem.what();
    }
    return "";
  }

  // The files below a folder, sorted.
  std::vector<std::string> filesIn(const Path& name) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / name)) {
      if (!entry.is_directory()) {
        names.push_back(entry.path().lexically_relative(folder_ / name).generic_string());
      }
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  const std::vector<std::string> kAll{"Archives/2025/May/info.dat",
                                      "Archives/2025/May/nodes.dat",
                                      "Archives/2025/May/notes.dat",
                                      "Archives/2025/May/purchases.dat",
                                      "info.dat",
                                      "load.txt",
                                      "nodes.dat",
                                      "notes.dat",
                                      "purchases.dat"};

  test::TemporaryFolder folder_;
  RealFileSystem real_{std::chrono::milliseconds(1)};
  test::FaultyFileSystem files_{real_};
};

TEST_F(FolderCopyTest, CopiesEveryFileOfTheFolderAndItsArchives) {
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(filesIn("Copy"), kAll);
  EXPECT_EQ(folder_.bytesOf("Copy/nodes.dat"), "Data nodes.dat");
  EXPECT_EQ(folder_.bytesOf("Copy/info.dat"), "Data info.dat");
  EXPECT_EQ(folder_.bytesOf("Copy/Archives/2025/May/notes.dat"), "Archives/2025/May notes.dat");
  EXPECT_EQ(folder_.bytesOf("Copy/load.txt"), "none\r\n");
}

TEST_F(FolderCopyTest, TakesAnEmptyFolder) {
  std::filesystem::create_directory(folder_ / "Copy");
  EXPECT_EQ(copy(folder_ / "Copy" / ""), "");
  EXPECT_EQ(filesIn("Copy"), kAll);
}

TEST_F(FolderCopyTest, RefusesAFolderThatIsNotEmpty) {
  std::filesystem::create_directory(folder_ / "Copy");
  folder_.givenAFile("Copy/mine.txt", "mine");
  EXPECT_TRUE(copy(folder_ / "Copy").ends_with("Copy: This folder is not empty."));
  EXPECT_EQ(filesIn("Copy"), std::vector<std::string>{"mine.txt"});
  EXPECT_TRUE(copy(folder_ / "Copy" / "mine.txt")
                  .ends_with("mine.txt: This is a file. Name a new or empty folder."));
}

TEST_F(FolderCopyTest, RefusesAPlaceInTheFoldersThatAreRead) {
  const std::string refusal = ": The output cannot be inside a folder ";
  std::filesystem::create_directory(folder_ / "Other");
  folder_.givenAFile("Other/notes.dat", "");
  for (const char* target : {"Data", "Data/Copy", "Data/../Data/Copy/Deep", "Archives/Copy",
                             "Archives/2025/May/Copy", "Other/Copy"}) {
    EXPECT_NE(copy(folder_ / target).find(refusal), std::string::npos) << target;
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Data" / "Copy"));
}

#ifndef _WIN32
TEST_F(FolderCopyTest, CopiesToWhereALinkLeads) {
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

TEST_F(FolderCopyTest, LocksAllFilesTogetherAndNoneWhileItWaitsForTheDisk) {
  const auto isLocked = [&](const char* name) {
    return test::failsBecauseInUse([&] { return real_.openRandomAccess(folder_ / "Data" / name); });
  };
  std::vector<std::string> seen;
  files_.onEveryCall([&] {
    const auto call = files_.calls().back();
    if (call != test::FileCall::WriteAt && call != test::FileCall::Sync) return;
    std::string locked = call == test::FileCall::WriteAt ? "write:" : "sync:";
    for (const char* name : {"load.txt", "info.dat", "purchases.dat", "notes.dat", "nodes.dat"}) {
      if (isLocked(name)) locked += std::string(" ") + name;
    }
    if (seen.empty() || seen.back() != locked) seen.push_back(locked);
  });
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(std::vector<std::string>(seen.begin(), seen.begin() + 6),
            (std::vector<std::string>{"write: load.txt info.dat purchases.dat notes.dat nodes.dat",
                                      "write: info.dat purchases.dat notes.dat nodes.dat",
                                      "write: purchases.dat notes.dat nodes.dat",
                                      "write: notes.dat nodes.dat", "write: nodes.dat", "sync:"}));
}

TEST_F(FolderCopyTest, NamesTheFolderThatAnotherProgramIsWriting) {
  const auto writer = real_.openRandomAccess(folder_ / "Data" / "notes.dat");
  EXPECT_TRUE(copy(folder_ / "Copy")
                  .ends_with("Data: Another program is using the files. Try again later."));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy"));
}

TEST_F(FolderCopyTest, LeavesNothingIfItFails) {
  ASSERT_EQ(copy(folder_ / "Copy"), "");
  const auto calls = static_cast<int>(files_.calls().size());
  int failures = 0;
  for (int call = 1; call <= calls; ++call) {
    std::filesystem::remove_all(folder_ / "Copy");
    files_.reset();
    files_.failAtCall(call, 61);
    const std::string problem = copy(folder_ / "Copy");
    if (problem.empty()) {
      EXPECT_EQ(filesIn("Copy"), kAll) << "call " << call;
      continue;
    }
    ++failures;
    EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy")) << "call " << call;
    EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy.quorrix-new")) << "call " << call;
  }
  EXPECT_GT(failures, 40);
}

TEST_F(FolderCopyTest, NeedsAFolderWithDataFiles) {
  std::filesystem::remove_all(folder_ / "Data");
  std::filesystem::create_directory(folder_ / "Data");
  EXPECT_TRUE(copy(folder_ / "Copy").ends_with("Data: There are no data files in this folder."));
}

TEST_F(FolderCopyTest, LeavesAnUnfinishedCopyToTheUser) {
  std::filesystem::create_directory(folder_ / "Copy.quorrix-new");
  EXPECT_TRUE(copy(folder_ / "Copy")
                  .ends_with("Copy.quorrix-new: This is an unfinished copy. Remove it and try "
                             "again."));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "Copy.quorrix-new"));
}

#ifndef _WIN32
TEST_F(FolderCopyTest, IsPrivate) {
  using std::filesystem::perms;
  ASSERT_EQ(copy(folder_ / "Copy"), "");
  for (const char* name : {"Copy", "Copy/Archives", "Copy/Archives/2025/May"}) {
    EXPECT_EQ(std::filesystem::status(folder_ / name).permissions(), perms::owner_all) << name;
  }
  EXPECT_EQ(std::filesystem::status(folder_ / "Copy/nodes.dat").permissions(),
            perms::owner_read | perms::owner_write);
}
#endif

}  // namespace
}  // namespace quorrix
