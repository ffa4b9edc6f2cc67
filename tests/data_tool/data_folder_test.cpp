#include "data_tool/data_folder.h"

#include <gtest/gtest.h>

#include "data_tool/problem.h"
#include "platform/real_file_system.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

std::vector<std::string> namesOf(const std::vector<DataFolder>& folders) {
  std::vector<std::string> names;
  names.reserve(folders.size());
  for (const DataFolder& folder : folders) names.push_back(folder.archive);
  return names;
}

std::vector<std::string> archivesIn(FileSystem& files, const Path& folder) {
  return namesOf(dataFoldersOf(files, folder, Archives::Include,
                               [](const Problem& problem) { ADD_FAILURE() << problem.what(); }));
}

std::string problemOf(FileSystem& files, const Path& folder) {
  try {
    static_cast<void>(archivesIn(files, folder));
  } catch (const Problem& problem) {
    return problem.what();
  }
  return "";
}

void givenAnArchive(const test::TemporaryFolder& folder, const Path& path) {
  std::filesystem::create_directories((folder / path));
  folder.givenAFile(path / "nodes.dat", "");
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
  files.givenAFile("Q/Data/nodes.dat", "");
  files.givenAFolder("Q/Archives/Empty");
  for (const char* name : {"May/nodes.dat", "2025/June/nodes.dat", "Notes/notes.dat"}) {
    files.givenAFolder((Path("Q") / "Archives" / name).parent_path());
    files.givenAFile(Path("Q") / "Archives" / name, "");
  }
  EXPECT_EQ(archivesIn(files, "Q/Data"),
            (std::vector<std::string>{"", "2025/June", "May", "Notes"}));
  EXPECT_EQ(dataFoldersOf(files, "Q/Data", Archives::LeaveOut, {}).size(), 1U);
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
  files.givenAFile("Copy/nodes.dat", "");
  EXPECT_EQ(archivesIn(files, "Copy"), (std::vector<std::string>{"", "May"}));
}

// A copy that was restored as the data folder has archives inside, perhaps an empty folder.
TEST(DataFolders, HaveArchivesInsideAndBeside) {
  test::MemoryFileSystem files;
  files.givenAFolder("Q/Data/Archives");
  files.givenAFile("Q/Data/nodes.dat", "");
  for (const char* name : {"Q/Archives/May", "Q/Archives/2025/June"}) {
    files.givenAFolder(name);
    files.givenAFile(Path(name) / "nodes.dat", "");
  }
  EXPECT_EQ(archivesIn(files, "Q/Data"), (std::vector<std::string>{"", "2025/June", "May"}));
  for (const char* name : {"Q/Data/Archives/2025/June", "Q/Data/Archives/July"}) {
    files.givenAFolder(name);
    files.givenAFile(Path(name) / "nodes.dat", "");
  }
  EXPECT_EQ(archivesIn(files, "Q/Data"),
            (std::vector<std::string>{"", "2025/June", "May", "2025/June (2)", "July"}));
}

TEST(DataFolders, AreFoundFromWhereverTheFolderIsNamed) {
  const test::TemporaryFolder folder;
  givenAnArchive(folder, "Data");
  givenAnArchive(folder, "Archives/May");
  RealFileSystem files;
  for (const Path& name : {folder / "Data", folder / "Data" / "", folder / "Data" / ".",
                           folder / "Archives" / ".." / "Data"}) {
    EXPECT_EQ(archivesIn(files, name), (std::vector<std::string>{"", "May"})) << name;
  }
}

TEST(DataFolders, AreAProblemIfTheFolderIsMissing) {
  test::MemoryFileSystem files;
  EXPECT_EQ(problemOf(files, "Nowhere"), "Nowhere: There is no such folder.");
}

TEST(DataFolders, AreAProblemIfTheFolderHasNoDataFiles) {
  test::MemoryFileSystem files;
  files.givenAFolder("Quorrix/Archives/May");
  files.givenAFile("Quorrix/Archives/May/nodes.dat", "");
  files.givenAFile("Quorrix/notes.txt", "");
  EXPECT_EQ(problemOf(files, "Quorrix"), "Quorrix: This folder has no data files.");
  // Quorrix creates the others when it starts.
  files.givenAFile("Quorrix/load.txt", "none");
  EXPECT_EQ(problemOf(files, "Quorrix"), "");
}

TEST(DataFolders, AreFoundAtEveryDepth) {
  test::MemoryFileSystem files;
  files.givenAFolder("Q/Data");
  files.givenAFile("Q/Data/nodes.dat", "");
  std::string deep = "a";
  for (int level = 2; level <= 40; ++level) deep += "/a";
  files.givenAFolder("Q/Archives/" + deep);
  files.givenAFile("Q/Archives/" + deep + "/nodes.dat", "");
  EXPECT_EQ(archivesIn(files, "Q/Data"), (std::vector<std::string>{"", deep}));
}

TEST(DataFolders, AreReportedIfTheyCannotBeRead) {
  test::MemoryFileSystem files;
  for (const char* name : {"Data", "Archives/1", "Archives/2/Deep", "Archives/3"}) {
    files.givenAFolder(Path("Q") / name);
    files.givenAFile(Path("Q") / name / "nodes.dat", "");
  }
  files.failListing("Q/Archives/2", 75);
  std::vector<std::string> reported;
  const auto report = [&](const Problem& problem) { reported.emplace_back(problem.what()); };
  EXPECT_EQ(namesOf(dataFoldersOf(files, "Q/Data", Archives::Include, report)),
            (std::vector<std::string>{"", "1", "3"}));
  EXPECT_EQ(reported, (std::vector<std::string>{(Path("Q") / "Archives" / "2").string() +
                                                ": Path/file access error."}));
}

TEST(ReadableDataFolders, LeaveOutAnArchiveWithAFileThatCannotBeOpened) {
  test::MemoryFileSystem memory;
  for (const char* name : {"Data", "Archives/1", "Archives/2"}) {
    memory.givenAFolder(Path("Q") / name);
    memory.givenAFile(Path("Q") / name / "nodes.dat", "");
  }
  test::FaultyFileSystem files(memory);
  files.failAtCall(test::FileCall::OpenForReading, 1, 75);
  std::vector<std::string> reported;
  const auto report = [&](const Problem& problem) { reported.emplace_back(problem.what()); };
  EXPECT_EQ(namesOf(readableFoldersOf(files, "Q/Data", Archives::Include, report)),
            (std::vector<std::string>{"", "2"}));
  EXPECT_EQ(reported,
            (std::vector<std::string>{(Path("Q") / "Archives" / "1" / "nodes.dat").string() +
                                      ": Path/file access error."}));
}

#ifndef _WIN32
class LinkedDataFolders : public testing::Test {
 protected:
  LinkedDataFolders() {
    givenAnArchive(folder_, "Data");
    givenAnArchive(folder_, "Archives/May");
  }

  void givenALink(const Path& name, const Path& target) {
    std::filesystem::create_directory_symlink(folder_ / target, folder_ / name);
  }

  // The links that are reported, from the folder of the test.
  std::vector<std::string> reported() {
    std::vector<std::string> links;
    const auto report = [&](const Problem& problem) {
      const std::string text = problem.what();
      const auto begin = folder_.path().string().size() + 1;
      links.push_back(text.substr(begin, text.find(": ") - begin));
    };
    static_cast<void>(dataFoldersOf(files_, folder_ / "Data", Archives::Include, report));
    return links;
  }

  std::vector<std::string> archives() { return archivesIn(files_, folder_ / "Data"); }

  test::TemporaryFolder folder_;
  RealFileSystem files_;
};

TEST_F(LinkedDataFolders, AreReadOnceUnderTheirOwnNames) {
  givenALink("Archives/Again", "Archives/May");
  givenALink("Archives/Data", "Data");
  EXPECT_EQ(archives(), (std::vector<std::string>{"", "May"}));
}

TEST_F(LinkedDataFolders, AreReadBelowOtherLinks) {
  givenAnArchive(folder_, "Disk/2025");
  givenAnArchive(folder_, "Stick/2024");
  givenALink("Archives/Disk", "Disk");
  givenALink("Disk/Stick", "Stick");
  EXPECT_EQ(archives(), (std::vector<std::string>{"", "Disk/2025", "Disk/Stick/2024", "May"}));
}

TEST_F(LinkedDataFolders, HaveTheirArchivesBesideTheFolderOrTheLink) {
  std::filesystem::create_directory(folder_ / "Elsewhere");
  givenALink("Elsewhere/Link", "Data");
  const Path link = folder_ / "Elsewhere" / "Link";
  EXPECT_EQ(archivesIn(files_, link), (std::vector<std::string>{"", "May"}));
  EXPECT_EQ(archivesIn(files_, link / ""), (std::vector<std::string>{"", "May"}));
  givenAnArchive(folder_, "Elsewhere/Archives/June");
  EXPECT_EQ(archivesIn(files_, link), (std::vector<std::string>{"", "June"}));
}

TEST_F(LinkedDataFolders, AreFoundOnceIfBothPlacesAreTheSame) {
  givenALink("Data/Archives", "Archives");
  EXPECT_EQ(archives(), (std::vector<std::string>{"", "May"}));
}

// Such as a link to "/", which would be searched to the end.
TEST_F(LinkedDataFolders, AreNotSoughtWhereALinkLeadsToAFolderAboveTheData) {
  givenAnArchive(folder_, "Other");
  givenALink("Archives/Up", "");
  EXPECT_EQ(archives(), (std::vector<std::string>{"", "May"}));
}

// An archive on a disk that is not mounted would otherwise be missing without a word.
TEST_F(LinkedDataFolders, AreReportedIfALinkLeadsNowhere) {
  givenALink("Archives/2024", "unplugged/2024");
  givenALink("Archives/May/Loop", "Archives/May/Loop");
  std::filesystem::create_symlink("../unplugged", folder_ / "Archives" / "May" / "notes.dat");
  EXPECT_EQ(reported(), (std::vector<std::string>{"Archives/2024", "Archives/May/Loop",
                                                  "Archives/May/notes.dat"}));
  std::filesystem::rename(folder_ / "Archives", folder_ / "Away");
  givenALink("Archives", "unplugged");
  EXPECT_EQ(reported(), std::vector<std::string>{"Archives"});
}

TEST_F(LinkedDataFolders, AreNotUnfinishedOutput) {
  givenAnArchive(folder_, "Archives/Copy.quorrix-new");
  EXPECT_EQ(archives(), (std::vector<std::string>{"", "May"}));
}

TEST_F(LinkedDataFolders, HaveTheSameNamesHoweverTheFolderIsNamed) {
  givenAnArchive(folder_, "Data/Archives/May");
  const Path earlier = std::filesystem::current_path();
  std::filesystem::current_path(folder_ / "Data");
  for (const Path& name : {folder_ / "Data", Path("."), Path("../Data"), Path("../Data//")}) {
    const auto folders = dataFoldersOf(files_, name, Archives::Include, {});
    EXPECT_EQ(namesOf(folders), (std::vector<std::string>{"", "May", "May (2)"})) << name;
    EXPECT_TRUE(
        std::filesystem::equivalent(folders[2].path, folder_ / "Data" / "Archives" / "May"));
  }
  std::filesystem::current_path(earlier);
}

TEST_F(LinkedDataFolders, EndWhereALinkLeadsBack) {
  givenAnArchive(folder_, "Disk/2025");
  givenALink("Archives/Loop", "Archives");
  givenALink("Archives/May/Up", "");
  givenALink("Archives/Disk", "Disk");
  givenALink("Disk/Back", "Archives");
  givenALink("Disk/2025/Self", "Disk/2025");
  EXPECT_EQ(archives(), (std::vector<std::string>{"", "Disk/2025", "May"}));
}
#endif

}  // namespace
}  // namespace quorrix
