#include "datafiles/working_folder.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(WorkingPaths, NamesTheFourDataFilesInTheFolder) {
  WorkingPaths paths;
  paths.setFolder(Path("somewhere") / "Data");
  EXPECT_EQ(paths.loadPath.generic_string(), "somewhere/Data");
  EXPECT_EQ(paths.currentNodesFile.generic_string(), "somewhere/Data/nodes.dat");
  EXPECT_EQ(paths.currentPurchasesFile.generic_string(), "somewhere/Data/purchases.dat");
  EXPECT_EQ(paths.currentUserIDPasswordFile.generic_string(), "somewhere/Data/info.dat");
  EXPECT_EQ(paths.currentURLNotesFile.generic_string(), "somewhere/Data/notes.dat");
}

TEST(WorkingPaths, PointsAllPathsIntoAnotherFolder) {
  WorkingPaths paths;
  paths.setFolder("one");
  paths.setFolder("two");
  EXPECT_EQ(paths.loadPath, Path("two"));
  EXPECT_EQ(paths.currentNodesFile.generic_string(), "two/nodes.dat");
  EXPECT_EQ(paths.currentPurchasesFile.generic_string(), "two/purchases.dat");
  EXPECT_EQ(paths.currentUserIDPasswordFile.generic_string(), "two/info.dat");
  EXPECT_EQ(paths.currentURLNotesFile.generic_string(), "two/notes.dat");
}

TEST(WorkingPaths, PointsTheFourFilesElsewhereAndKeepsTheFolder) {
  WorkingPaths paths;
  paths.setFolder("one");
  paths.setFilesFolder("two");
  EXPECT_EQ(paths.loadPath, Path("one"));
  EXPECT_EQ(paths.currentNodesFile.generic_string(), "two/nodes.dat");
  EXPECT_EQ(paths.currentPurchasesFile.generic_string(), "two/purchases.dat");
  EXPECT_EQ(paths.currentUserIDPasswordFile.generic_string(), "two/info.dat");
  EXPECT_EQ(paths.currentURLNotesFile.generic_string(), "two/notes.dat");
}

}  // namespace
}  // namespace quorrix
