#include "data_tool/data_folder.h"

#include <gtest/gtest.h>

#include "data_tool/problem.h"
#include "platform/real_file_system.h"
#include "support/memory_file_system.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

std::vector<std::string> archivesIn(FileSystem& files, const Path& folder) {
  std::vector<std::string> names;
  for (const DataFolder& found : dataFoldersOf(files, folder, Archives::Include)) {
    names.push_back(found.archive);
  }
  return names;
}

TEST(DefaultDataFolder, IsBesideTheProgramIfThereIsOne) {
  test::MemoryFileSystem files;
  files.givenAFolder("/opt/Quorrix/Data");
  EXPECT_EQ(defaultDataFolder(files, "/opt/Quorrix", "/home/anna/.local/share"),
            Path("/opt/Quorrix/Data"));
  EXPECT_EQ(defaultDataFolder(files, "/usr/bin", "/home/anna/.local/share"),
            Path("/home/anna/.local/share/Quorrix/Data"));
}

TEST(DataFolders, AreTheDataFolderAndEveryArchiveBelowArchives) {
  test::MemoryFileSystem files;
  files.givenAFolder("Q/Data");
  files.givenAFolder("Q/Archives/Empty");
  for (const char* name : {"May/nodes.dat", "2025/June/nodes.dat", "Notes/notes.dat"}) {
    files.givenAFolder((Path("Q/Archives") / name).parent_path());
    files.givenAFile(Path("Q/Archives") / name, "");
  }
  EXPECT_EQ(archivesIn(files, "Q/Data"),
            (std::vector<std::string>{"", "2025/June", "May", "Notes"}));
  EXPECT_EQ(dataFoldersOf(files, "Q/Data", Archives::LeaveOut).size(), 1U);
}

TEST(DataFolders, OfAnArchiveAreThatArchiveAlone) {
  test::MemoryFileSystem files;
  files.givenAFolder("Q/Archives/May");
  files.givenAFile("Q/Archives/May/nodes.dat", "");
  files.givenAFolder("Q/Data");
  EXPECT_EQ(archivesIn(files, "Q/Archives/May"), std::vector<std::string>{""});
}

TEST(DataFolders, OfACopyHaveTheirArchivesInside) {
  test::MemoryFileSystem files;
  files.givenAFolder("Copy/Archives/May");
  files.givenAFile("Copy/Archives/May/nodes.dat", "");
  EXPECT_EQ(archivesIn(files, "Copy"), (std::vector<std::string>{"", "May"}));
}

TEST(DataFolders, AreFoundFromWhereverTheFolderIsNamed) {
  const test::TemporaryFolder folder;
  std::filesystem::create_directories(folder / "Data");
  std::filesystem::create_directories(folder / "Archives" / "May");
  folder.givenAFile(Path("Archives") / "May" / "nodes.dat", "");
  RealFileSystem files;
  for (const Path& name : {folder / "Data", folder / "Data" / "", folder / "Data" / ".",
                           folder / "Archives" / ".." / "Data"}) {
    EXPECT_EQ(archivesIn(files, name), (std::vector<std::string>{"", "May"})) << name;
  }
}

TEST(DataFolders, AreAProblemIfTheFolderIsMissing) {
  test::MemoryFileSystem files;
  try {
    static_cast<void>(dataFoldersOf(files, "Nowhere", Archives::Include));
    FAIL();
  } catch (const Problem& problem) {
    EXPECT_STREQ(problem.what(), "Nowhere: There is no such folder.");
  }
}

#ifndef _WIN32
TEST(DataFolders, DoNotFollowALinkThatLeadsBack) {
  const test::TemporaryFolder folder;
  std::filesystem::create_directories(folder / "Data");
  std::filesystem::create_directories(folder / "Archives" / "May");
  folder.givenAFile(Path("Archives") / "May" / "nodes.dat", "");
  std::filesystem::create_directory_symlink(folder / "Archives", folder / "Archives" / "Loop");
  std::filesystem::create_directory_symlink(folder / "Archives" / "May",
                                            folder / "Archives" / "Other");
  RealFileSystem files;
  EXPECT_EQ(archivesIn(files, folder / "Data"), (std::vector<std::string>{"", "May", "Other"}));
}
#endif

}  // namespace
}  // namespace quorrix
