#include "archives/archive_operations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/real_file_system.h"
#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"
#include "support/site_record_bytes.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failureNumberOf;
using test::FileCall;
using test::kFileFailures;
using test::siteRecord;

const Path kData("Quorrix/Data");
const Path kMay("Quorrix/Archives/May");

// In the order of the letters of a state: nodes, notes ("u"), purchases, info.
constexpr const char* kNames[] = {"nodes.dat", "notes.dat", "purchases.dat", "info.dat"};

class ArchiveOperationsTest : public testing::Test {
 protected:
  ArchiveOperationsTest() { paths_.setFolder(kData); }

  // Each file has at most one byte: in "nupi" all four have one; in "n-0i" the notes are
  // missing and the purchases are empty.
  void given(const Path& folder, const std::string& state) {
    memory_.givenAFolder(folder);
    for (std::size_t i = 0; i < 4; ++i) {
      if (memory_.holdsFile(folder / kNames[i])) memory_.deleteFile(folder / kNames[i]);
      if (state[i] == '-') continue;
      memory_.givenAFile(folder / kNames[i], state[i] == '0' ? "" : state.substr(i, 1));
    }
  }

  std::string stateOf(const Path& folder) {
    std::string state;
    for (const char* name : kNames) {
      if (!memory_.holdsFile(folder / name)) {
        state += '-';
      } else {
        const std::string& bytes = memory_.bytesOf(folder / name);
        state += bytes.empty() ? "0" : bytes;
      }
    }
    return state;
  }

  // The archive's files, then the working ones.
  std::string states() { return stateOf(kMay) + " " + stateOf(kData); }

  void givenASiteFile(std::string bytes) { memory_.givenAFile(kData / "nodes.dat", bytes); }
  bool hasSites() { return hasSitesToArchive(files_, paths_); }

  void archive(EarlierArchive earlier) { moveIntoArchive(files_, paths_, kMay, earlier); }

  // The caller's work between the two steps does not touch the files.
  void load(const Path& folder = kMay) {
    paths_.setFilesFolder(folder);
    takeOverArchive(files_, appPaths_, paths_, folder);
  }

  bool deleteFrom(const Path& folder, const std::vector<Path>& names) {
    return deleteArchiveFiles(files_, folder, names);
  }

  void expectCurrentFilesIn(const Path& folder) {
    EXPECT_EQ(paths_.loadPath, kData);
    EXPECT_EQ(paths_.currentNodesFile, folder / "nodes.dat");
    EXPECT_EQ(paths_.currentPurchasesFile, folder / "purchases.dat");
    EXPECT_EQ(paths_.currentUserIDPasswordFile, folder / "info.dat");
    EXPECT_EQ(paths_.currentURLNotesFile, folder / "notes.dat");
  }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  AppPaths appPaths_{"Quorrix"};
  WorkingPaths paths_;
};

TEST_F(ArchiveOperationsTest, FindNothingToArchiveInAnEmptySiteFile) {
  given(kData, "0upi");
  EXPECT_FALSE(hasSites());
}

TEST_F(ArchiveOperationsTest, FindNothingToArchiveInDeletedRecords) {
  givenASiteFile(std::string(322, ' ') + std::string(322, ' '));
  EXPECT_FALSE(hasSites());
  givenASiteFile(std::string(322, '\0'));
  EXPECT_FALSE(hasSites());
  givenASiteFile(siteRecord(" a.a.a"));
  EXPECT_FALSE(hasSites());
}

TEST_F(ArchiveOperationsTest, FindOneSiteBehindManyDeletedRecords) {
  givenASiteFile(std::string(std::size_t{2000} * 322, ' ') + siteRecord("a.a.a"));
  EXPECT_TRUE(hasSites());
}

TEST_F(ArchiveOperationsTest, ReadNoMoreOfTheSiteFileThanItTakesToFindASite) {
  givenASiteFile(siteRecord("a.a.a") + std::string(std::size_t{2000} * 322, ' '));
  EXPECT_TRUE(hasSites());
  EXPECT_EQ(files_.callsOf(FileCall::ReadAt), 1);
}

TEST_F(ArchiveOperationsTest, CountATrailingPartRecordAsTheSiteFileDoes) {
  const std::string blank(322, ' ');
  givenASiteFile(siteRecord("a.a.a").substr(0, 161));
  EXPECT_FALSE(hasSites());
  givenASiteFile(siteRecord("a.a.a").substr(0, 162));
  EXPECT_TRUE(hasSites());
  givenASiteFile(blank + siteRecord("a.a.a").substr(0, 160));
  EXPECT_FALSE(hasSites());
  givenASiteFile(blank + siteRecord("a.a.a").substr(0, 161));
  EXPECT_TRUE(hasSites());
}

TEST_F(ArchiveOperationsTest, CreateAMissingSiteFile) {
  memory_.givenAFolder(kData);
  EXPECT_FALSE(hasSites());
  EXPECT_EQ(memory_.bytesOf(kData / "nodes.dat"), "");
}

TEST_F(ArchiveOperationsTest, LookForSitesInTheCurrentFile) {
  givenASiteFile("");
  memory_.givenAFile(kMay / "nodes.dat", siteRecord("a.a.a"));
  paths_.setFilesFolder(kMay);
  EXPECT_TRUE(hasSites());
}

TEST_F(ArchiveOperationsTest, FailToLookForSitesWithTheNumberOfWhateverCallFails) {
  givenASiteFile(siteRecord("a.a.a"));
  for (const FileCall call : {FileCall::OpenRandomAccess, FileCall::Length, FileCall::ReadAt}) {
    for (const int number : kFileFailures) {
      files_.reset();
      files_.failAtCall(call, 1, number);
      EXPECT_EQ(failureNumberOf([this] { return hasSites(); }), number);
      EXPECT_EQ(memory_.openFiles(), 0);
    }
  }
}

TEST_F(ArchiveOperationsTest, MoveTheWorkingDataIntoTheArchive) {
  given(kMay, "----");
  given(kData, "nupi");
  archive(EarlierArchive::None);
  EXPECT_EQ(states(), "nupi 0000");
  expectCurrentFilesIn(kData);
}

TEST_F(ArchiveOperationsTest, MoveEmptyFilesToo) {
  given(kMay, "----");
  given(kData, "n0p0");
  archive(EarlierArchive::None);
  EXPECT_EQ(states(), "n0p0 0000");
}

TEST_F(ArchiveOperationsTest, MoveBytesAsTheyAre) {
  given(kMay, "----");
  given(kData, "nupi");
  const auto bytes = "\x00\x1A\r\n\n\xFF half a record"s;
  memory_.givenAFile(kData / "notes.dat", bytes);
  archive(EarlierArchive::None);
  EXPECT_EQ(memory_.bytesOf(kMay / "notes.dat"), bytes);
}

TEST_F(ArchiveOperationsTest, ReplaceAnEarlierArchiveAndNoOtherFile) {
  given(kMay, "NUPI");
  given(kData, "nupi");
  memory_.givenAFile(kMay / "titles.txt", "titles");
  memory_.givenAFile(kMay / "nodes", "nodes");
  memory_.givenAFile("Quorrix/Archives/Maypurchases.dat", "beside");
  archive(EarlierArchive::Delete);
  EXPECT_EQ(states(), "nupi 0000");
  EXPECT_EQ(memory_.bytesOf(kMay / "titles.txt"), "titles");
  EXPECT_EQ(memory_.bytesOf(kMay / "nodes"), "nodes");
  EXPECT_EQ(memory_.bytesOf("Quorrix/Archives/Maypurchases.dat"), "beside");
}

TEST_F(ArchiveOperationsTest, OverwritePurchasesThatDoNotCountAsAnEarlierArchive) {
  given(kMay, "--P-");
  given(kData, "nupi");
  archive(EarlierArchive::None);
  EXPECT_EQ(states(), "nupi 0000");
}

TEST_F(ArchiveOperationsTest, StopAtAFileThatTheEarlierArchiveLacks) {
  given(kData, "nupi");
  const std::pair<std::string, std::string> cases[] = {
      {"-UPI", "-UPI"}, {"N-PI", "--PI"}, {"NU-I", "---I"}, {"NUP-", "----"}, {"----", "----"}};
  for (const auto& [before, after] : cases) {
    given(kMay, before);
    EXPECT_EQ(failureNumberOf([this] { archive(EarlierArchive::Delete); }), 53) << before;
    EXPECT_EQ(states(), after + " nupi");
  }
}

TEST_F(ArchiveOperationsTest, StopAtAReadOnlyFileOfTheEarlierArchive) {
  given(kMay, "NUPI");
  given(kData, "nupi");
  memory_.givenAReadOnlyFile(kMay / "purchases.dat", "P");
  EXPECT_EQ(failureNumberOf([this] { archive(EarlierArchive::Delete); }), 75);
  EXPECT_EQ(states(), "--PI nupi");
}

TEST_F(ArchiveOperationsTest, StopArchivingAtAWorkingFileThatIsMissing) {
  given(kMay, "----");
  given(kData, "nu-i");
  EXPECT_EQ(failureNumberOf([this] { archive(EarlierArchive::None); }), 53);
  EXPECT_EQ(states(), "nu-- nu-i");
}

TEST_F(ArchiveOperationsTest, StopArchivingIntoAMissingFolder) {
  given(kData, "nupi");
  EXPECT_EQ(failureNumberOf([this] { archive(EarlierArchive::None); }), 76);
  EXPECT_EQ(states(), "---- nupi");
}

TEST_F(ArchiveOperationsTest, StopEmptyingAtAReadOnlyFile) {
  given(kMay, "----");
  given(kData, "nupi");
  memory_.givenAReadOnlyFile(kData / "notes.dat", "u");
  EXPECT_EQ(failureNumberOf([this] { archive(EarlierArchive::None); }), 75);
  EXPECT_EQ(states(), "nupi -upi");
}

TEST_F(ArchiveOperationsTest, CopyTheCurrentFilesAndEmptyTheWorkingOnes) {
  given("Quorrix/Archives/April", "abcd");
  given(kMay, "----");
  given(kData, "nupi");
  paths_.setFilesFolder("Quorrix/Archives/April");
  archive(EarlierArchive::None);
  EXPECT_EQ(states(), "abcd 0000");
  EXPECT_EQ(stateOf("Quorrix/Archives/April"), "abcd");
}

TEST_F(ArchiveOperationsTest, CopyTheWorkingFilesOntoThemselvesAndEmptyThem) {
  given(kData, "nupi");
  moveIntoArchive(files_, paths_, kData, EarlierArchive::Delete);
  EXPECT_EQ(stateOf(kData), "0000");
}

// Occurs after a failed load: the archive itself is displayed.
TEST_F(ArchiveOperationsTest, KeepAnArchiveThatIsArchivedOntoItself) {
  given(kMay, "NUPI");
  given(kData, "nupi");
  paths_.setFilesFolder(kMay);
  archive(EarlierArchive::Delete);
  EXPECT_EQ(states(), "NUPI 0000");
}

TEST_F(ArchiveOperationsTest, StopArchivingWithTheNumberOfWhateverCallFails) {
  const std::string statesBefore[] = {
      "NUPI nupi", "NUPI nupi", "-UPI nupi", "-UPI nupi",  // the earlier archive is compared
      "--PI nupi", "--PI nupi", "---I nupi", "---I nupi",  // with the current files, deleted
      "---- nupi", "n--- nupi", "nu-- nupi", "nup- nupi",  // copied
      "nupi nupi", "nupi -upi", "nupi --pi", "nupi ---i",  // deleted
      "nupi ----", "nupi 0---", "nupi 0---", "nupi 00--",  // created, synced
      "nupi 00--", "nupi 000-", "nupi 000-", "nupi 0000"};
  for (int call = 1; call <= 24; ++call) {
    for (const int number : kFileFailures) {
      given(kMay, "NUPI");
      given(kData, "nupi");
      files_.reset();
      files_.failAtCall(call, number);
      EXPECT_EQ(failureNumberOf([this] { archive(EarlierArchive::Delete); }), number);
      EXPECT_EQ(states(), statesBefore[call - 1]) << "call " << call;
      EXPECT_EQ(memory_.openFiles(), 0);
      expectCurrentFilesIn(kData);
    }
  }
  EXPECT_EQ(files_.calls().size(), 24U);  // the last one failed
}

TEST_F(ArchiveOperationsTest, CopyTheArchiveOverTheWorkingData) {
  given(kMay, "NUPI");
  given(kData, "nupi");
  load();
  EXPECT_EQ(states(), "NUPI NUPI");
  expectCurrentFilesIn(kData);
}

TEST_F(ArchiveOperationsTest, PointIntoTheArchiveUntilItIsCopied) {
  given(kMay, "NUPI");
  given(kData, "nupi");
  std::vector<Path> seen;
  files_.onEveryCall([&] { seen.push_back(paths_.currentNodesFile); });
  load();
  EXPECT_EQ(seen, (std::vector<Path>(4, kMay / "nodes.dat")));
}

TEST_F(ArchiveOperationsTest, LoadIntoADataFolderThatLacksFiles) {
  given(kMay, "NU0I");
  given(kData, "--p-");
  load();
  EXPECT_EQ(states(), "NU0I NU0I");
}

TEST_F(ArchiveOperationsTest, StopLoadingAtAFileThatTheArchiveLacks) {
  const std::pair<std::string, std::string> cases[] = {
      {"-UPI", "nupi"}, {"NU-I", "Nupi"}, {"N-PI", "NuPi"}, {"NUP-", "NUPi"}};
  for (const auto& [archived, working] : cases) {
    given(kMay, archived);
    given(kData, "nupi");
    EXPECT_EQ(failureNumberOf([this] { load(); }), 53);
    EXPECT_EQ(states(), archived + " " + working);
    expectCurrentFilesIn(kMay);
  }
}

TEST_F(ArchiveOperationsTest, StopLoadingAtAReadOnlyWorkingFile) {
  given(kMay, "NUPI");
  given(kData, "nupi");
  memory_.givenAReadOnlyFile(kData / "notes.dat", "u");
  EXPECT_EQ(failureNumberOf([this] { load(); }), 75);
  EXPECT_EQ(states(), "NUPI NuPi");
  expectCurrentFilesIn(kMay);
}

TEST_F(ArchiveOperationsTest, StopLoadingWithTheNumberOfWhateverCallFails) {
  const std::string statesBefore[] = {"NUPI nupi", "NUPI Nupi", "NUPI NuPi", "NUPI NUPi"};
  for (int call = 1; call <= 4; ++call) {
    for (const int number : kFileFailures) {
      given(kMay, "NUPI");
      given(kData, "nupi");
      files_.reset();
      files_.failAtCall(call, number);
      EXPECT_EQ(failureNumberOf([this] { load(); }), number);
      EXPECT_EQ(states(), statesBefore[call - 1]) << "call " << call;
      expectCurrentFilesIn(kMay);
    }
  }
  files_.reset();
  load();
  EXPECT_EQ(files_.calls().size(), 4U);
  expectCurrentFilesIn(kData);
}

TEST_F(ArchiveOperationsTest, LoadTheWorkingFolderOntoItself) {
  given(kData, "nupi");
  load(kData);
  EXPECT_EQ(stateOf(kData), "nupi");
  expectCurrentFilesIn(kData);
}

TEST_F(ArchiveOperationsTest, DeleteTheFilesOfAnArchiveAndNoOther) {
  given(kMay, "NU--");
  memory_.givenAFile(kMay / "readme.txt", "read me");
  EXPECT_TRUE(deleteFrom(kMay, {"nodes.dat", "notes.dat", "readme.txt"}));
  EXPECT_EQ(stateOf(kMay), "----");
  EXPECT_EQ(memory_.bytesOf(kMay / "readme.txt"), "read me");
  EXPECT_TRUE(memory_.folderExists(kMay));
}

TEST_F(ArchiveOperationsTest, DeleteTheNamesWithoutAnExtension) {
  const std::vector<Path> names{"info", "nodes", "notes", "purchases"};
  for (const Path& name : names) memory_.givenAFile(kMay / name, "");
  EXPECT_TRUE(deleteFrom(kMay, names));
  for (const Path& name : names) EXPECT_FALSE(memory_.holdsFile(kMay / name)) << name;
}

TEST_F(ArchiveOperationsTest, DeleteNothingUnderOtherNames) {
  memory_.givenAFile(kMay / "NODES.DAT", "upper case");
  memory_.givenAFile(kMay / "titles.txt", "titles");
  EXPECT_FALSE(deleteFrom(kMay, {"NODES.DAT", "titles.txt"}));
  EXPECT_FALSE(deleteFrom(kMay, {}));
  EXPECT_EQ(memory_.bytesOf(kMay / "NODES.DAT"), "upper case");
  EXPECT_EQ(memory_.bytesOf(kMay / "titles.txt"), "titles");
}

TEST_F(ArchiveOperationsTest, DeleteTheWorkingFilesWhenAskedTo) {
  given(kData, "nupi");
  memory_.givenAFile(kData / "load.txt", "none\r\n");
  EXPECT_TRUE(
      deleteFrom(kData, {"info.dat", "load.txt", "nodes.dat", "notes.dat", "purchases.dat"}));
  EXPECT_EQ(stateOf(kData), "----");
  EXPECT_EQ(memory_.bytesOf(kData / "load.txt"), "none\r\n");
}

TEST_F(ArchiveOperationsTest, StopDeletingAtAReadOnlyFile) {
  given(kMay, "NUPI");
  memory_.givenAReadOnlyFile(kMay / "notes.dat", "U");
  EXPECT_EQ(failureNumberOf([this] {
              return deleteFrom(kMay, {"info.dat", "nodes.dat", "notes.dat", "purchases.dat"});
            }),
            75);
  EXPECT_EQ(stateOf(kMay), "-UP-");
}

TEST_F(ArchiveOperationsTest, StopDeletingAtAFileThatIsGoneMeanwhile) {
  given(kMay, "N-P-");
  EXPECT_EQ(failureNumberOf([this] {
              return deleteFrom(kMay, {"nodes.dat", "notes.dat", "purchases.dat"});
            }),
            53);
  EXPECT_EQ(stateOf(kMay), "--P-");
}

TEST_F(ArchiveOperationsTest, StopDeletingWithTheNumberOfWhateverCallFails) {
  const std::string statesBefore[] = {"NUPI", "NUP-", "-UP-", "--P-"};
  for (int call = 1; call <= 4; ++call) {
    for (const int number : kFileFailures) {
      given(kMay, "NUPI");
      files_.reset();
      files_.failAtCall(call, number);
      EXPECT_EQ(failureNumberOf([this] {
                  return deleteFrom(kMay, {"info.dat", "nodes.dat", "notes.dat", "purchases.dat"});
                }),
                number);
      EXPECT_EQ(stateOf(kMay), statesBefore[call - 1]) << "call " << call;
    }
  }
}

TEST_F(ArchiveOperationsTest, WorkOnRealFiles) {
  const test::TemporaryFolder folder;
  RealFileSystem real;
  const Path data = folder / "Data";
  const Path may = folder / "May";
  real.makeFolder(data);
  real.makeFolder(may);
  for (const char* name : kNames) folder.givenAFile(data / name, name + "\0\r\n\x1A\xFF"s);
  WorkingPaths paths;
  paths.setFolder(data);

  moveIntoArchive(real, paths, may, EarlierArchive::None);
  for (const char* name : kNames) EXPECT_EQ(folder.bytesOf(data / name), "");
  paths.setFilesFolder(may);
  takeOverArchive(real, AppPaths(folder.path()), paths, may);
  for (const char* name : kNames) {
    EXPECT_EQ(folder.bytesOf(data / name), name + "\0\r\n\x1A\xFF"s);
    EXPECT_EQ(folder.bytesOf(may / name), name + "\0\r\n\x1A\xFF"s);
  }
  folder.givenAFile(data / "nodes.dat", "tracked since");
  EXPECT_EQ(folder.bytesOf(may / "nodes.dat"), "nodes.dat\0\r\n\x1A\xFF"s);
  moveIntoArchive(real, paths, may, EarlierArchive::Delete);
  EXPECT_EQ(folder.bytesOf(may / "nodes.dat"), "tracked since");

  EXPECT_TRUE(deleteArchiveFiles(real, may, std::vector<Path>(kNames, kNames + 4)));
  EXPECT_TRUE(std::filesystem::is_empty(may));
}

// Another path to the folder: through a link or, where none can be made, in other
// letter case.
Path anotherPathTo(const Path& folder) {
  const Path link = folder.parent_path() / "Link";
  std::error_code refused;
  std::filesystem::create_directory_symlink(folder, link, refused);
  return refused ? folder.parent_path() / "DATA" : link;
}

TEST_F(ArchiveOperationsTest, KnowTheWorkingFolderUnderAnotherPath) {
  const test::TemporaryFolder folder;
  RealFileSystem real;
  const Path data = folder / "Data";
  real.makeFolder(data);
  for (const char* name : kNames) folder.givenAFile(data / name, "x");
  WorkingPaths paths;
  paths.setFolder(data);
  const Path other = anotherPathTo(data);
  ASSERT_TRUE(real.fileExists(other / "nodes.dat"));

  EXPECT_EQ(failureNumberOf([&] { moveIntoArchive(real, paths, other, EarlierArchive::Delete); }),
            test::kNoFailure);
  for (const char* name : kNames) EXPECT_EQ(folder.bytesOf(data / name), "");
}

}  // namespace
}  // namespace quorrix
