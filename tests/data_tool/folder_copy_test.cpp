#include "data_tool/folder_copy.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>

#include "data_tool/folder_copy_stage.h"
#include "support/failure_number.h"

namespace quorrix {
namespace {

using test::FileCall;

constexpr const char* kFiles[] = {"load.txt", "info.dat", "purchases.dat", "notes.dat",
                                  "nodes.dat"};

class FolderCopyTest : public test::FolderCopyStage {
 protected:
  // Those of Data that another program could not write to now.
  std::string lockedFiles() {
    std::string locked;
    for (const char* name : kFiles) {
      const auto open = [&] { return real_.openRandomAccess(folder_ / "Data" / name); };
      if (test::failsBecauseInUse(open)) locked += std::string(" ") + name;
    }
    return locked;
  }
};

TEST_F(FolderCopyTest, CopiesEveryFileOfTheFolderAndItsArchives) {
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(filesIn("Copy"), kAll);
  EXPECT_EQ(folder_.bytesOf("Copy/nodes.dat"), "Data nodes.dat");
  EXPECT_EQ(folder_.bytesOf("Copy/info.dat"), "Data info.dat");
  EXPECT_EQ(folder_.bytesOf("Copy/Archives/2025/May/notes.dat"), "Archives/2025/May notes.dat");
  EXPECT_EQ(folder_.bytesOf("Copy/load.txt"), "none\r\n");
}

TEST_F(FolderCopyTest, CopiesTheArchivesInsideAndBesideTheFolder) {
  std::filesystem::create_directories(folder_ / "Data/Archives/2025/May");
  folder_.givenAFile("Data/Archives/2025/May/nodes.dat", "inside");
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(folder_.bytesOf("Copy/Archives/2025/May/nodes.dat"), "Archives/2025/May nodes.dat");
  EXPECT_EQ(folder_.bytesOf("Copy/Archives/2025/May (2)/nodes.dat"), "inside");
  EXPECT_NE(copy(folder_ / "Data/Archives/Copy").find(": The output cannot be inside a folder "),
            std::string::npos);
}

TEST_F(FolderCopyTest, RefusesAPlaceInTheFoldersThatAreRead) {
  const std::string refusal = ": The output cannot be inside a folder ";
  std::filesystem::create_directory(folder_ / "Other");
  folder_.givenAFile("Other/notes.dat", "");
  folder_.givenAFile("notes.dat", "");  // above all of them
  for (const char* target : {"Data", "Data/Copy", "Data/../Data/Copy/Deep", "Archives/Copy",
                             "Archives/2025/May/Copy", "Other/Copy"}) {
    EXPECT_NE(copy(folder_ / target).find(refusal), std::string::npos) << target;
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Data" / "Copy"));
  EXPECT_EQ(copy(folder_ / "Copy"),
            folder_.path().string() + ": The output cannot be inside a folder with data files.");
  std::filesystem::create_directory(folder_ / "New");
  EXPECT_EQ(copy(folder_ / "New" / "Copy"), "");
}

#ifndef _WIN32
TEST_F(FolderCopyTest, RefusesAPlaceBelowAFolderThatALinkOfTheArchivesLeadsTo) {
  std::filesystem::create_directories(folder_ / "Disk" / "2025");
  folder_.givenAFile("Disk/2025/nodes.dat", "");
  std::filesystem::create_directory_symlink(folder_ / "Disk", folder_ / "Archives" / "Disk");
  EXPECT_EQ(copy(folder_ / "Disk" / "Copy"),
            (folder_ / "Disk" / "Copy").string() +
                ": The output cannot be inside a folder that is read.");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Disk" / "Copy"));
}
#endif

TEST_F(FolderCopyTest, GivesUpIfAFileStaysInUse) {
  std::unique_ptr<RandomAccessFile> open;
  onEveryWrite([&] {
    if (!open) open = real_.openRandomAccess(folder_ / "Data" / "info.dat");
  });
  EXPECT_EQ(copy(folder_ / "Copy"), (folder_ / "Data" / "info.dat").string() +
                                        ": Another program is using this file. Try again later.");
  open.reset();
  files_.reset();
  // From when every file has been read twice, because it is new.
  files_.onEveryCall([&] {
    if (!open && files_.callsOf(FileCall::ReadAt) == 10 &&
        files_.calls().back() == FileCall::OpenForReading) {
      open = real_.openRandomAccess(folder_ / "Data" / "load.txt");
    }
  });
  EXPECT_NE(copy(folder_ / "Copy").find(": Another program is using the files. Try again later."),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy"));
}

TEST_F(FolderCopyTest, LocksNothingWhileItWrites) {
  std::set<std::string> locked;
  files_.onEveryCall([&] {
    const auto call = files_.calls().back();
    const bool isWriting = call == FileCall::WriteAt || call == FileCall::Sync ||
                           call == FileCall::OpenRandomAccess || call == FileCall::Rename;
    if (!isWriting) return;
    locked.insert(lockedFiles());
    if (call != FileCall::WriteAt) return;
    // The second change is found only when all files are locked.
    if (files_.callsOf(FileCall::WriteAt) == 3) write("Data/load.txt", 0, "late");
    if (files_.callsOf(FileCall::WriteAt) == 6) write("Data/load.txt", 0, "last");
  });
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(folder_.bytesOf("Copy/load.txt"), "last\r\n");
  EXPECT_EQ(locked, std::set<std::string>{""});
}

TEST_F(FolderCopyTest, LocksAllFilesTogetherAndReleasesEachWhenItIsRead) {
  std::vector<std::string> locked;
  files_.onEveryCall([&] {
    if (files_.calls().back() == FileCall::ReadAt) locked.push_back(lockedFiles());
  });
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  // Each file alone, twice because they are new, and then together.
  const std::vector<std::string> alone{" load.txt", " info.dat", " purchases.dat", " notes.dat",
                                       " nodes.dat"};
  std::vector<std::string> expected(alone);
  expected.insert(expected.end(), alone.begin(), alone.end());
  expected.insert(expected.end(),
                  {" load.txt info.dat purchases.dat notes.dat nodes.dat",
                   " info.dat purchases.dat notes.dat nodes.dat",
                   " purchases.dat notes.dat nodes.dat", " notes.dat nodes.dat", " nodes.dat"});
  locked.resize(expected.size());  // without the archive
  EXPECT_EQ(locked, expected);
}

TEST_F(FolderCopyTest, ReadsAgainOnlyWhatWasWrittenLately) {
  const auto earlier = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  for (const char* name : kFiles) {
    std::filesystem::last_write_time(folder_ / "Data" / name, earlier);
  }
  std::vector<std::string> locked;
  files_.onEveryCall([&] {
    const auto call = files_.calls().back();
    if (call == FileCall::ReadAt) locked.push_back(lockedFiles());
    if (call == FileCall::WriteAt && locked.size() == 5) write("Data/notes.dat", 0, "late");
  });
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  locked.resize(7);  // without the archive
  EXPECT_EQ(locked,
            (std::vector<std::string>{" load.txt", " info.dat", " purchases.dat", " notes.dat",
                                      " nodes.dat", " notes.dat", " notes.dat nodes.dat"}));
  EXPECT_EQ(folder_.bytesOf("Copy/notes.dat"), "late notes.dat");
}

// At every write of the copy, another program changes two files that belong together.
TEST_F(FolderCopyTest, HasTheFilesAsTheyWereAtOneMoment) {
  int number = 0;
  onEveryWrite([&] {
    const std::string text = "visit " + std::to_string(++number);
    write("Data/notes.dat", 0, text);
    write("Data/nodes.dat", 600'000, text);
  });
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  // Seven writes, then the two changed blocks again. What changes later is not in the copy.
  EXPECT_EQ(folder_.bytesOf("Copy/notes.dat").substr(0, 7), "visit 9");
  EXPECT_EQ(folder_.bytesOf("Copy/nodes.dat").substr(600'000), "visit 9");
  EXPECT_GT(number, 9);
}

TEST_F(FolderCopyTest, StartsAgainIfAFileBecomesShorter) {
  bool isDone = false;
  onEveryWrite([&] {
    if (isDone || !std::filesystem::exists(folder_ / "Copy.quorrix-new/nodes.dat")) return;
    isDone = true;
    for (const char* name : {"nodes.dat", "notes.dat"}) {
      real_.deleteFile(folder_ / "Data" / name);
      folder_.givenAFile(Path("Data") / name, "");
    }
    real_.deleteFile(folder_ / "Data" / "info.dat");
  });
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(folder_.bytesOf("Copy/nodes.dat"), "");
  EXPECT_EQ(folder_.bytesOf("Copy/notes.dat"), "");
  EXPECT_EQ(folder_.bytesOf("Copy/purchases.dat"), "Data purchases.dat");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy" / "info.dat"));
}

TEST_F(FolderCopyTest, GivesUpIfTheFilesNeverRest) {
  std::size_t length = 1000;
  folder_.givenAFile("Data/load.txt", std::string(length, 'x'));
  onEveryWrite([&] { folder_.givenAFile("Data/load.txt", std::string(--length, 'x')); });
  EXPECT_TRUE(copy(folder_ / "Copy")
                  .ends_with("Data: The files changed while they were copied. Try again."));
  EXPECT_EQ(1000 - length, 5U * 6);  // in each round five files, and load.txt again
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy.quorrix-new"));
}

TEST_F(FolderCopyTest, NamesTheFileThatAnotherProgramIsWriting) {
  const auto writer = real_.openRandomAccess(folder_ / "Data" / "notes.dat");
  EXPECT_TRUE(copy(folder_ / "Copy")
                  .ends_with("notes.dat: Another program is using this file. Try again later."));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "Copy"));
}

// A program that needs load.txt gets it, although another one keeps the last file locked.
TEST_F(FolderCopyTest, LetsOthersHaveTheFilesBetweenTwoAttemptsToLockAll) {
  std::unique_ptr<RandomAccessFile> writer;
  files_.onEveryCall([&] {
    // Each file was opened twice by then, because it is new.
    const bool isLockingAll = files_.callsOf(FileCall::OpenForReading) == 11;
    if (isLockingAll && !writer) writer = real_.openRandomAccess(folder_ / "Data" / "nodes.dat");
  });
  int pauses = 0;
  timing_.patience = std::chrono::hours(1);
  timing_.sleep = [&](std::chrono::milliseconds) {
    EXPECT_EQ(lockedFiles(), " nodes.dat");
    if (++pauses == 1) write("Data/load.txt", 0, "late");
    if (pauses == 3) files_.onEveryCall({});
    if (pauses == 3) writer.reset();
  };
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(pauses, 3);
  EXPECT_EQ(folder_.bytesOf("Copy/load.txt"), "late\r\n");
}

TEST_F(FolderCopyTest, NeedsAFolderWithDataFiles) {
  std::filesystem::remove_all(folder_ / "Data");
  std::filesystem::create_directory(folder_ / "Data");
  EXPECT_TRUE(copy(folder_ / "Copy").ends_with("Data: This folder has no data files."));
}

TEST_F(FolderCopyTest, ContinuesAfterAnArchiveThatCannotBeRead) {
  std::filesystem::create_directories(folder_ / "Archives/2026/notes.dat/x");
  folder_.givenAFile("Archives/2026/nodes.dat", "");
  EXPECT_EQ(copy(folder_ / "Copy"), "");
  EXPECT_EQ(filesIn("Copy"), kAll);
  ASSERT_EQ(reported_.size(), 1U);
  EXPECT_TRUE(reported_[0].ends_with("notes.dat: Path/file access error.")) << reported_[0];
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
