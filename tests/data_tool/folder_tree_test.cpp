#include "data_tool/folder_tree.h"

#include <gtest/gtest.h>

#include "data_tool/stored_records.h"
#include "support/code_pages.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::siteRecord;

class FolderTreeTest : public testing::Test {
 protected:
  FolderTreeTest() { memory_.givenAFolder(folder_.path); }

  FolderTree read(const std::string& nodes, const std::string& notes = "") {
    memory_.givenAFile(folder_.path / "nodes.dat", nodes);
    memory_.givenAFile(folder_.path / "notes.dat", notes);
    RecordReader records(memory_);
    FolderReader reader(records, test::westernCodePage(), folder_);
    return FolderTree(reader, SiteDetailIndex(reader, {.notes = true}));
  }

  // "scheme time" of each record, with a flag or stamp that cannot be read.
  static std::vector<std::string> sitesAt(const FolderTree& tree, std::string_view key) {
    std::vector<std::string> sites;
    tree.forEachSite(tree.levels().at(key), [&](const SiteEntry& site) {
      EXPECT_EQ(site.address, key);
      sites.push_back(std::string(schemeName(site.protocolFlag)) + site.unknownFlag + " " +
                      (site.visited ? isoTime(*site.visited) : site.unreadableStamp));
    });
    return sites;
  }

  test::MemoryFileSystem memory_;
  DataFolder folder_{"Data", ""};
};

using Sites = std::vector<std::string>;

TEST_F(FolderTreeTest, HasALevelForEachSegmentInTheOrderOfTheFile) {
  const FolderTree tree = read(siteRecord("www.mill.example/a/b") + siteRecord("a.garden.example") +
                               siteRecord("www.mill.example/a"));
  const SiteTree& levels = tree.levels();
  ASSERT_EQ(levels.childCount(levels.root()), 2U);
  const NodeId mill = levels.child(levels.root(), 0);
  EXPECT_EQ(levels.text(mill), "www.mill.example");
  EXPECT_EQ(levels.text(levels.child(mill, 0)), "a");
  EXPECT_FALSE(tree.isKept(mill));
  EXPECT_TRUE(tree.isKept(levels.child(mill, 0)));
  EXPECT_EQ(tree.keptInBranch(mill), 2U);
  EXPECT_EQ(tree.keptInBranch(levels.root()), 3U);
}

TEST_F(FolderTreeTest, HasEveryRecordOfALevel) {
  const FolderTree tree = read(siteRecord("a.b.c", 'S') + siteRecord("a.b.c", 'x', "long ago~") +
                               siteRecord("d.e.f", 'N', "yesterday~") +
                               siteRecord("a.b.c", 'U', "1/2/26 12:00:00 AM~"));
  EXPECT_EQ(sitesAt(tree, "a.b.c"),
            (Sites{"https 2026-07-01T08:00:00", "x long ago", "none 2026-01-02T00:00:00"}));
  EXPECT_EQ(sitesAt(tree, "d.e.f"), Sites{"http yesterday"});
}

TEST_F(FolderTreeTest, HasLevelsThatHaveOnlyDetails) {
  const FolderTree tree = read(siteRecord("a.b.c/d"), test::notesRecord("a.b.c", "One.") +
                                                          test::notesRecord("d.e.f", "Two."));
  EXPECT_TRUE(tree.isKept(tree.levels().at("a.b.c")));
  EXPECT_TRUE(tree.isKept(tree.levels().at("d.e.f")));
  EXPECT_EQ(sitesAt(tree, "d.e.f"), Sites{});
}

TEST_F(FolderTreeTest, KeepsWhatQuorrixLeavesOutOfItsTree) {
  std::string deep = "a.b.c";
  for (int level = 2; level <= 51; ++level) deep += "/x";
  const FolderTree tree =
      read(siteRecord(deep) + siteRecord("ROOT", 'S') + siteRecord(deep.substr(0, deep.size() - 2)),
           test::notesRecord(deep, "Deep.") + test::notesRecord(deep + "/y", "Deeper."));
  ASSERT_EQ(tree.outsiders().size(), 3U);
  EXPECT_EQ(tree.outsiders()[0].address, deep);
  EXPECT_TRUE(isRecorded(tree.outsiders()[0]));
  EXPECT_EQ(tree.outsiders()[1].address, "ROOT");
  EXPECT_EQ(tree.outsiders()[2].address, deep + "/y");
  EXPECT_FALSE(isRecorded(tree.outsiders()[2]));
  EXPECT_EQ(tree.keptInBranch(tree.levels().root()), 1U);
}

}  // namespace
}  // namespace quorrix
