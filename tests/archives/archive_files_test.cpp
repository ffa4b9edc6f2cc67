#include "archives/archive_files.h"

#include <gtest/gtest.h>

#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::failureNumberOf;
using test::FileCall;

const Path kMay("Archives/May");

class ArchiveFilesTest : public testing::Test {
 protected:
  ArchiveFilesTest() { memory_.givenAFolder(kMay); }

  void given(const Path& path) { memory_.givenAFile(path, ""); }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
};

TEST_F(ArchiveFilesTest, AreMissedInAnEmptyFolder) {
  EXPECT_FALSE(holdsArchiveFiles(files_, kMay));
  EXPECT_FALSE(canBeLoaded(files_, kMay));
}

TEST_F(ArchiveFilesTest, AreMissedInAFolderThatIsMissing) {
  EXPECT_FALSE(holdsArchiveFiles(files_, "Archives/June"));
  EXPECT_FALSE(canBeLoaded(files_, "Archives/June"));
}

TEST_F(ArchiveFilesTest, AreHeldWithAnyOneOfFourNames) {
  for (const char* name : {"nodes.dat", "notes.dat", "info.dat", "titles.txt"}) {
    const Path folder = Path("Archives") / (std::string("with ") + name);
    given(folder / name);
    EXPECT_TRUE(holdsArchiveFiles(files_, folder)) << name;
  }
}

TEST_F(ArchiveFilesTest, AreHeldByAFolderWithPurchasesBesideIt) {
  given("Archives/Maypurchases.dat");
  EXPECT_TRUE(holdsArchiveFiles(files_, kMay));
}

TEST_F(ArchiveFilesTest, AreNotHeldByAFolderWithPurchasesInIt) {
  given("Archives/May/purchases.dat");
  given("Archives/purchases.dat");
  EXPECT_FALSE(holdsArchiveFiles(files_, kMay));
}

TEST_F(ArchiveFilesTest, AreNotHeldUnderOtherNames) {
  for (const char* name : {"nodes", "notes", "info", "NODES.DAT", "nodes.dat.old", "load.txt"}) {
    given(kMay / name);
  }
  EXPECT_FALSE(holdsArchiveFiles(files_, kMay));
}

TEST_F(ArchiveFilesTest, AreNoFoldersOfTheirNames) {
  for (const char* name : {"nodes.dat", "notes.dat", "info.dat", "titles.txt"}) {
    memory_.givenAFolder(kMay / name);
  }
  memory_.givenAFolder("Archives/Maypurchases.dat");
  EXPECT_FALSE(holdsArchiveFiles(files_, kMay));
  EXPECT_FALSE(canBeLoaded(files_, kMay));
}

TEST_F(ArchiveFilesTest, CanBeLoadedWithTheNodesAlone) {
  given(kMay / "nodes.dat");
  EXPECT_TRUE(canBeLoaded(files_, kMay));
}

TEST_F(ArchiveFilesTest, CannotBeLoadedWithoutTheNodes) {
  for (const char* name : {"notes.dat", "purchases.dat", "info.dat", "titles.txt", "nodes"}) {
    given(kMay / name);
  }
  EXPECT_FALSE(canBeLoaded(files_, kMay));
}

TEST_F(ArchiveFilesTest, FailWhereTheFolderCannotBeLookedInto) {
  for (int call = 1; call <= 5; ++call) {
    files_.reset();
    files_.failAtCall(FileCall::FileExists, call, 71);
    EXPECT_EQ(failureNumberOf([&] { return holdsArchiveFiles(files_, kMay); }), 71);
  }
  files_.reset();
  files_.failAtCall(1, 68);
  EXPECT_EQ(failureNumberOf([&] { return canBeLoaded(files_, kMay); }), 68);
}

TEST_F(ArchiveFilesTest, AreDeletedUnderEightNames) {
  for (const char* name : {"nodes.dat", "nodes", "notes.dat", "notes", "purchases.dat", "purchases",
                           "info.dat", "info"}) {
    EXPECT_TRUE(isDeletedWithAnArchive(name)) << name;
  }
}

TEST_F(ArchiveFilesTest, StayUnderEveryOtherName) {
  for (const char* name :
       {"titles.txt", "NODES.DAT", "Nodes.dat", "nodes.DAT", "Info", "nodes.", "nodes.dat ",
        " nodes", "nodes.da", "nodes.data", "load.txt", "readme.txt", "Maypurchases.dat", ""}) {
    EXPECT_FALSE(isDeletedWithAnArchive(name)) << name;
  }
}

}  // namespace
}  // namespace quorrix
