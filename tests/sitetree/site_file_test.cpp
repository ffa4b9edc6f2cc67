#include "sitetree/site_file.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/failure_number.h"
#include "support/fake_clock.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failureNumberOf;
using test::FileCall;
using test::kFileFailures;

// A record as stored in the file: 300 bytes of address, the flag, 21 bytes of stamp.
std::string record(std::string address, char flag = 'N', std::string stamp = "1/2/25 3:04:05 AM~") {
  address.resize(300, ' ');
  stamp.resize(21, ' ');
  return address + flag + stamp;
}

// An address of this many segments: "one.two.three", then "/s" repeatedly.
std::string addressOfLevels(int levels) {
  std::string address = "one.two.three";
  for (int k = 2; k <= levels; ++k) address += "/s";
  return address;
}

class SiteFileTest : public testing::Test {
 protected:
  SiteFileTest() {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
    clock_.set({.year = 2026, .month = 7, .day = 9, .hour = 15, .minute = 4, .second = 5});
  }

  void givenTheFile(std::string bytes) {
    memory_.givenAFile(paths_.currentNodesFile, std::move(bytes));
  }

  const std::string& file() { return memory_.bytesOf(paths_.currentNodesFile); }

  // The keys of the nodes below the root: each node before its children, siblings in
  // their order.
  std::vector<std::string> loadedKeys() {
    SiteTree tree;
    siteFile_.loadNodes(tree);
    std::vector<std::string> keys;
    listBelow(tree, tree.root(), keys);
    return keys;
  }

  using Keys = std::vector<std::string>;

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  test::FakeClock clock_;
  WorkingPaths paths_;
  SiteFile siteFile_{files_, clock_, paths_};

 private:
  static void listBelow(const SiteTree& tree, NodeId node, std::vector<std::string>& keys) {
    for (std::size_t row = 0; row < tree.childCount(node); ++row) {
      keys.emplace_back(tree.key(tree.child(node, row)));
      listBelow(tree, tree.child(node, row), keys);
    }
  }
};

class SiteFileLatestVisitTest : public SiteFileTest {
 protected:
  // The scheme letter and the stamp; "none" if there is no record.
  std::string latestVisit(std::string_view address) {
    const auto visit = siteFile_.latestVisit(address);
    return visit ? visit->protocolFlag + (" " + visit->stamp) : "none";
  }
};

using SiteFileLatestVisit = SiteFileLatestVisitTest;

TEST_F(SiteFileLatestVisit, IsInTheOnlyRecordOfAnAddress) {
  const std::string bytes = record("one.two.three", 'N', "1/2/26 3:04:05 PM~") +
                            record("four.five.six", 'S', "11/16/99 2:12:26 AM~");
  givenTheFile(bytes);
  EXPECT_EQ(latestVisit("four.five.six"), "S 11/16/99 2:12:26 AM");
  EXPECT_EQ(latestVisit("four.five"), "none");
  EXPECT_EQ(file(), bytes);
}

TEST_F(SiteFileLatestVisit, IsTheLatestWhicheverRecordHasIt) {
  for (const auto& [first, second] : {std::pair{"7/7/26 12:59:59 AM~", "7/7/26 1:00:00 AM~"},
                                      {"12/31/99 1:00:00 AM~", "1/1/00 1:00:00 AM~"},
                                      {"7/7/26 11:59:59 AM~", "7/7/26 12:00:00 PM~"},
                                      {"nonsense~", "7/7/26 1:00:00 AM~"}}) {
    givenTheFile(record("four.five.six", 'S', first) + record("four.five.six", 'N', second));
    const std::string later(second, std::string_view(second).size() - 1);
    EXPECT_EQ(latestVisit("four.five.six"), "N " + later);
    givenTheFile(record("four.five.six", 'N', second) + record("four.five.six", 'S', first));
    EXPECT_EQ(latestVisit("four.five.six"), "N " + later);
  }
}

TEST_F(SiteFileLatestVisit, IsThatOfTheFirstRecordWhenNoStampCanBeRead) {
  givenTheFile(record("four.five.six", 'S', "soon~") + record("four.five.six", 'N', "later~"));
  EXPECT_EQ(latestVisit("four.five.six"), "S soon");
}

TEST_F(SiteFileTest, CreatesAMissingFileAndLoadsTheRootAlone) {
  SiteTree tree;
  siteFile_.loadNodes(tree);
  EXPECT_EQ(tree.size(), 1U);
  EXPECT_EQ(tree.key(tree.root()), "ROOT");
  EXPECT_EQ(tree.text(tree.root()), "www");
  EXPECT_EQ(file(), "");
}

TEST_F(SiteFileTest, LoadsEveryLevelOfARecordWithItsFlag) {
  givenTheFile(record("one.two.three/a/b", 'S'));
  SiteTree tree;
  siteFile_.loadNodes(tree);
  EXPECT_EQ(tree.size(), 4U);
  EXPECT_EQ(tree.tag(tree.at("one.two.three")), 'S');
  EXPECT_EQ(tree.tag(tree.at("one.two.three/a")), 'S');
  EXPECT_EQ(tree.tag(tree.at("one.two.three/a/b")), 'S');
}

TEST_F(SiteFileTest, LeavesTheFlagsOfEarlierRecords) {
  givenTheFile(record("one.two.three/a", 'N') + record("one.two.three/a/b", 'S') +
               record("one.two.three", 'U'));
  SiteTree tree;
  siteFile_.loadNodes(tree);
  EXPECT_EQ(tree.tag(tree.at("one.two.three")), 'N');
  EXPECT_EQ(tree.tag(tree.at("one.two.three/a")), 'N');
  EXPECT_EQ(tree.tag(tree.at("one.two.three/a/b")), 'S');
}

TEST_F(SiteFileTest, LoadsRecordsInTheirOrder) {
  givenTheFile(record("z.z.z") + record("a.a.a/2") + record("a.a.a/1"));
  EXPECT_EQ(loadedKeys(), (Keys{"z.z.z", "a.a.a", "a.a.a/2", "a.a.a/1"}));
}

TEST_F(SiteFileTest, LoadsRecordsOfOneAddressIntoOneNode) {
  givenTheFile(record("one.two.three") + record("one.two.three"));
  EXPECT_EQ(loadedKeys(), Keys{"one.two.three"});
}

TEST_F(SiteFileTest, TellsLetterCaseApartOnLoading) {
  givenTheFile(record("one.two.three/A") + record("one.two.three/a"));
  EXPECT_EQ(loadedKeys(), (Keys{"one.two.three", "one.two.three/A", "one.two.three/a"}));
}

TEST_F(SiteFileTest, PassesOverRecordsWithoutAnAddress) {
  givenTheFile(record("") + record(" one.two.three") + record("\0one.two.three"s) +
               record("four.five.six"));
  EXPECT_EQ(loadedKeys(), Keys{"four.five.six"});
}

TEST_F(SiteFileTest, LoadsAnAddressUpToItsFirstBlank) {
  givenTheFile(record("one.two.three/x y"));
  EXPECT_EQ(loadedKeys(), (Keys{"one.two.three", "one.two.three/x"}));
}

TEST_F(SiteFileTest, LoadsAnAddressUpToItsFirstNul) {
  givenTheFile(record("one.two.three/x y\0z"s));
  EXPECT_EQ(loadedKeys(), (Keys{"one.two.three", "one.two.three/x y"}));
}

TEST_F(SiteFileTest, LoadsAnAddressOf300Characters) {
  const std::string address = "one.two.three/" + std::string(286, 'x');
  givenTheFile(record(address));
  EXPECT_EQ(loadedKeys(), (Keys{"one.two.three", address}));
}

TEST_F(SiteFileTest, LoadsWhateverStandsForAnAddress) {
  givenTheFile(record("nodots") + record("a.b.c//d/") + record("ROOT") + record("ROOT/x"));
  EXPECT_EQ(loadedKeys(), (Keys{"nodots", "a.b.c", "a.b.c/", "a.b.c//d", "a.b.c//d/", "ROOT/x"}));
}

TEST_F(SiteFileTest, LoadsAnAddressOfFiftyLevels) {
  givenTheFile(record(addressOfLevels(50)));
  EXPECT_EQ(loadedKeys().size(), 50U);
}

TEST_F(SiteFileTest, PassesOverAnAddressOf51LevelsWhole) {
  givenTheFile(record(addressOfLevels(51)) + record("four.five.six"));
  EXPECT_EQ(loadedKeys(), Keys{"four.five.six"});
}

TEST_F(SiteFileTest, LoadsATrailingPartRecordOfMoreThanAHalf) {
  givenTheFile(record("one.two.three") + record("four.five.six/" + std::string(286, 'x')));
  const std::string whole = file();
  givenTheFile(whole.substr(0, 322 + 162));
  EXPECT_EQ(loadedKeys(),
            (Keys{"one.two.three", "four.five.six", "four.five.six/" + std::string(148, 'x')}));
  givenTheFile(whole.substr(0, 322 + 160));
  EXPECT_EQ(loadedKeys(), Keys{"one.two.three"});
}

TEST_F(SiteFileTest, RoundsAHalfRecordToTheEvenNumberOnLoading) {
  const std::string half = "four.five.six/" + std::string(147, 'x');
  givenTheFile(half);
  EXPECT_EQ(loadedKeys(), Keys{});
  givenTheFile(record("one.two.three") + half);
  EXPECT_EQ(loadedKeys(), (Keys{"one.two.three", "four.five.six", half}));
  givenTheFile(record("one.two.three") + record("one.two.three") + half);
  EXPECT_EQ(loadedKeys(), Keys{"one.two.three"});
}

TEST_F(SiteFileTest, TakesThePaddingOfAPartRecordForText) {
  // Missing bytes read as NUL, and blanks before a NUL belong to the text.
  givenTheFile(record("one.two.three", 'N').substr(0, 200));
  EXPECT_EQ(loadedKeys(), Keys{"one.two.three" + std::string(187, ' ')});
}

TEST_F(SiteFileTest, LoadsAPartRecordWhoseAddressIsWhole) {
  givenTheFile(record("one.two.three", 'S').substr(0, 300));
  SiteTree tree;
  siteFile_.loadNodes(tree);
  EXPECT_EQ(tree.tag(tree.at("one.two.three")), '\0');
}

TEST_F(SiteFileTest, AddsToTheTreeThatIsThere) {
  givenTheFile(record("one.two.three"));
  SiteTree tree;
  tree.addRoot();
  tree.addMissingLevels(addressLevels("four.five.six"), 'N');
  siteFile_.readSiteFile(tree);
  EXPECT_EQ(tree.size(), 3U);
}

TEST_F(SiteFileTest, WritesNothingOnLoading) {
  givenTheFile(record("one.two.three") + "rest");
  loadedKeys();
  EXPECT_EQ(file(), record("one.two.three") + "rest");
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 0);
  EXPECT_EQ(files_.callsOf(FileCall::Sync), 0);
}

TEST_F(SiteFileTest, SkipsAnUnreadableRecordOnLoading) {
  givenTheFile(record("a.a.a") + record("b.b.b") + record("c.c.c"));
  files_.spoilBytes(322 + 100, 1, 57);
  EXPECT_EQ(loadedKeys(), (Keys{"a.a.a", "c.c.c"}));
}

TEST_F(SiteFileTest, LoadsEverythingWhenOneReadFailsOnce) {
  for (const int number : kFileFailures) {
    files_.reset();
    givenTheFile(record("a.a.a") + record("b.b.b"));
    files_.failOneRead(number);
    EXPECT_EQ(loadedKeys(), (Keys{"a.a.a", "b.b.b"})) << number;
  }
}

TEST_F(SiteFileTest, ReportsThatTheFileCannotBeOpenedForLoading) {
  for (const int number : kFileFailures) {
    files_.reset();
    files_.failAtCall(FileCall::OpenRandomAccess, 1, number);
    SiteTree tree;
    EXPECT_EQ(failureNumberOf([&] { siteFile_.loadNodes(tree); }), number);
    EXPECT_EQ(tree.size(), 1U);
  }
}

TEST_F(SiteFileTest, ReportsThatTheLengthCannotBeHadForLoading) {
  files_.failAtCall(FileCall::Length, 1, 57);
  EXPECT_EQ(failureNumberOf([this] { loadedKeys(); }), 57);
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(SiteFileTest, ReportsAMissingFolder) {
  paths_.setFolder("Nowhere");
  EXPECT_EQ(failureNumberOf([this] { loadedKeys(); }), 76);
}

TEST_F(SiteFileTest, AnnouncesLoadingAsOneReset) {
  class ResetCounter final : public SiteTreeObserver {
   public:
    void treeWillBeReset() override {}
    void treeWasReset() override { ++resets; }
    void nodeWillBeAdded(NodeId, std::size_t) override { ++others; }
    void nodeWasAdded(NodeId) override { ++others; }
    void nodeWillBeRemoved(NodeId, std::size_t) override { ++others; }
    void nodeWasRemoved() override { ++others; }
    void selectionChanged(NodeId) override { ++others; }

    int resets = 0;
    int others = 0;
  };
  givenTheFile(record("one.two.three/a") + record("one.two.three/b"));
  SiteTree tree;
  tree.addRoot();
  ResetCounter counter;
  tree.setObserver(&counter);
  siteFile_.readSiteFile(tree);
  EXPECT_EQ(counter.resets, 1);
  EXPECT_EQ(counter.others, 0);
}

// The whole file, byte by byte: the address in six lines of fifty, then the flag, then
// the stamp.
TEST_F(SiteFileTest, WritesTheseBytes) {
  siteFile_.appendSiteRecord("www.example.org/manual/intro.html", 'N');
  const std::string appended =
      "www.example.org/manual/intro.html                 "
      "                                                  "
      "                                                  "
      "                                                  "
      "                                                  "
      "                                                  "
      "N"
      "7/9/26 3:04:05 PM~   ";
  ASSERT_EQ(appended.size(), 322U);
  EXPECT_EQ(file(), appended);

  clock_.set({.year = 2026, .month = 12, .day = 31, .hour = 23, .minute = 59, .second = 58});
  siteFile_.updateSiteRecord("www.example.org/manual/intro.html", 'S');
  const std::string updated =
      "www.example.org/manual/intro.html                 "
      "                                                  "
      "                                                  "
      "                                                  "
      "                                                  "
      "                                                  "
      "S"
      "12/31/26 11:59:58 PM~";
  ASSERT_EQ(updated.size(), 322U);
  EXPECT_EQ(file(), updated);
}

TEST_F(SiteFileTest, AppendsBehindTheLastRecord) {
  givenTheFile(record("a.a.a"));
  siteFile_.appendSiteRecord("b.b.b", 'S');
  EXPECT_EQ(file(), record("a.a.a") + record("b.b.b", 'S', "7/9/26 3:04:05 PM~"));
}

TEST_F(SiteFileTest, AppendsASecondRecordOfTheSameAddress) {
  givenTheFile(record("a.a.a"));
  siteFile_.appendSiteRecord("a.a.a", 'S');
  EXPECT_EQ(file(), record("a.a.a") + record("a.a.a", 'S', "7/9/26 3:04:05 PM~"));
}

TEST_F(SiteFileTest, DoesNotFillBlankedRecords) {
  givenTheFile(record("") + record("a.a.a"));
  siteFile_.appendSiteRecord("b.b.b", 'N');
  EXPECT_EQ(file(), record("") + record("a.a.a") + record("b.b.b", 'N', "7/9/26 3:04:05 PM~"));
}

TEST_F(SiteFileTest, AppendsAnAddressOf300Characters) {
  const std::string address = "one.two.three/" + std::string(286, 'x');
  siteFile_.appendSiteRecord(address, 'U');
  EXPECT_EQ(file(), address + "U7/9/26 3:04:05 PM~   ");
}

TEST_F(SiteFileTest, OverwritesATrailingPartRecordThatDoesNotCount) {
  givenTheFile(record("a.a.a") + std::string(160, 'x'));
  siteFile_.appendSiteRecord("b.b.b", 'N');
  EXPECT_EQ(file(), record("a.a.a") + record("b.b.b", 'N', "7/9/26 3:04:05 PM~"));
}

TEST_F(SiteFileTest, AppendsBehindATrailingPartRecordThatCounts) {
  givenTheFile(record("a.a.a") + std::string(200, 'x'));
  siteFile_.appendSiteRecord("b.b.b", 'N');
  EXPECT_EQ(file(), record("a.a.a") + std::string(200, 'x') + std::string(122, '\0') +
                        record("b.b.b", 'N', "7/9/26 3:04:05 PM~"));
}

TEST_F(SiteFileTest, RoundsAHalfRecordToTheEvenNumberOnAppending) {
  const std::string half(161, 'x');
  const std::string added = record("b.b.b", 'N', "7/9/26 3:04:05 PM~");
  givenTheFile(half);
  siteFile_.appendSiteRecord("b.b.b", 'N');
  EXPECT_EQ(file(), added);
  givenTheFile(record("a.a.a") + half);
  siteFile_.appendSiteRecord("b.b.b", 'N');
  EXPECT_EQ(file(), record("a.a.a") + half + std::string(161, '\0') + added);
}

TEST_F(SiteFileTest, UpdatesStampAndFlagOnly) {
  givenTheFile(record("a.a.a") + record("b.b.b/page") + record("c.c.c"));
  siteFile_.updateSiteRecord("b.b.b/page", 'S');
  EXPECT_EQ(file(),
            record("a.a.a") + record("b.b.b/page", 'S', "7/9/26 3:04:05 PM~") + record("c.c.c"));
}

TEST_F(SiteFileTest, LeavesNothingOfALongerStamp) {
  givenTheFile(record("a.a.a", 'N', "12/31/25 10:59:59 PM~"));
  siteFile_.updateSiteRecord("a.a.a", 'N');
  EXPECT_EQ(file(), record("a.a.a", 'N', "7/9/26 3:04:05 PM~"));
}

TEST_F(SiteFileTest, UpdatesTheFirstOfTwoRecordsOfOneAddress) {
  givenTheFile(record("a.a.a") + record("b.b.b") + record("b.b.b"));
  siteFile_.updateSiteRecord("b.b.b", 'S');
  EXPECT_EQ(file(), record("a.a.a") + record("b.b.b", 'S', "7/9/26 3:04:05 PM~") + record("b.b.b"));
}

TEST_F(SiteFileTest, ChangesNoByteOfTheAddressField) {
  const std::string field = "a.a.a\0 left over \0"s + std::string(282, '\xFF');
  givenTheFile(field + "N1/2/25 3:04:05 AM~   ");
  siteFile_.updateSiteRecord("a.a.a", 'S');
  EXPECT_EQ(file(), field + "S7/9/26 3:04:05 PM~   ");
}

TEST_F(SiteFileTest, WritesNothingWhenNoRecordHasTheAddress) {
  const std::string before = record("one.two.three/a/b") + record("one.two.three/A") +
                             record(" one.two.three/a") + record("one.two.three/ab");
  givenTheFile(before);
  siteFile_.updateSiteRecord("one.two.three/a", 'S');
  EXPECT_EQ(file(), before);
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 0);
}

TEST_F(SiteFileTest, NeverUpdatesARecordThatBeginsWithABlank) {
  givenTheFile(record(" a.a.a"));
  siteFile_.updateSiteRecord(" a.a.a", 'S');
  siteFile_.updateSiteRecord("a.a.a", 'S');
  EXPECT_EQ(file(), record(" a.a.a"));
}

TEST_F(SiteFileTest, FindsNoAddressThatHoldsABlank) {
  givenTheFile(record("a.a.a/x y"));
  siteFile_.updateSiteRecord("a.a.a/x y", 'S');
  EXPECT_EQ(file(), record("a.a.a/x y"));
  siteFile_.updateSiteRecord("a.a.a/x", 'S');
  EXPECT_EQ(file(), record("a.a.a/x y", 'S', "7/9/26 3:04:05 PM~"));
}

TEST_F(SiteFileTest, CreatesAMissingFileOnUpdating) {
  siteFile_.updateSiteRecord("a.a.a", 'S');
  EXPECT_EQ(file(), "");
}

TEST_F(SiteFileTest, UpdatesATrailingPartRecordOfTheVeryAddress) {
  givenTheFile(record("a.a.a") + "b.b.b");
  siteFile_.updateSiteRecord("b.b.b", 'S');
  EXPECT_EQ(file(), record("a.a.a") + "b.b.b" + std::string(295, '\0') + "S7/9/26 3:04:05 PM~   ");
}

TEST_F(SiteFileTest, DoesNotFindAnAddressWhosePaddingWasCut) {
  givenTheFile(record("a.a.a") + "b.b.b   ");
  siteFile_.updateSiteRecord("b.b.b", 'S');
  EXPECT_EQ(file(), record("a.a.a") + "b.b.b   ");
}

TEST_F(SiteFileTest, UpdatesFarDownInALargeFile) {
  std::string bytes;
  for (int i = 0; i < 3'000; ++i) bytes += record("host.of.number" + std::to_string(i));
  givenTheFile(bytes);
  siteFile_.updateSiteRecord("host.of.number2990", 'S');
  bytes.replace(std::size_t{2990} * 322, 322,
                record("host.of.number2990", 'S', "7/9/26 3:04:05 PM~"));
  EXPECT_EQ(file(), bytes);
}

TEST_F(SiteFileTest, IsSyncedWhenItReportsSuccess) {
  siteFile_.appendSiteRecord("a.a.a", 'N');
  EXPECT_TRUE(memory_.isSynced(paths_.currentNodesFile));
  siteFile_.updateSiteRecord("a.a.a", 'S');
  EXPECT_TRUE(memory_.isSynced(paths_.currentNodesFile));
}

TEST_F(SiteFileTest, ClosesTheFileAfterEachOperation) {
  SiteTree tree;
  siteFile_.loadNodes(tree);
  EXPECT_EQ(memory_.openFiles(), 0);
  siteFile_.appendSiteRecord("a.a.a", 'N');
  EXPECT_EQ(memory_.openFiles(), 0);
  siteFile_.updateSiteRecord("a.a.a", 'N');
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(SiteFileTest, WorksOnTheFileThatIsInUseNow) {
  memory_.givenAFolder("Other");
  siteFile_.appendSiteRecord("a.a.a", 'N');
  const std::string before = file();
  paths_.setFolder("Other");
  siteFile_.appendSiteRecord("b.b.b", 'N');
  EXPECT_EQ(file(), record("b.b.b", 'N', "7/9/26 3:04:05 PM~"));
  EXPECT_EQ(memory_.bytesOf("Data/nodes.dat"), before);
}

TEST_F(SiteFileTest, RefusesAFileThatIsReadOnly) {
  memory_.givenAReadOnlyFile(paths_.currentNodesFile, record("a.a.a"));
  EXPECT_EQ(failureNumberOf([this] { siteFile_.appendSiteRecord("b.b.b", 'N'); }), 75);
  EXPECT_EQ(failureNumberOf([this] { siteFile_.updateSiteRecord("a.a.a", 'S'); }), 75);
  EXPECT_EQ(file(), record("a.a.a"));
}

TEST_F(SiteFileTest, FailsWithTheNumberOfWhateverCallFailsOnUpdating) {
  const std::string before = record("a.a.a") + record("b.b.b") + record("c.c.c");
  givenTheFile(before);
  siteFile_.updateSiteRecord("b.b.b", 'S');
  const std::string after = file();
  const int calls = static_cast<int>(files_.calls().size());
  ASSERT_GE(calls, 5);  // open, length, read, write, sync
  for (int call = 1; call <= calls; ++call) {
    for (const int number : kFileFailures) {
      givenTheFile(before);
      files_.reset();
      files_.failAtCall(call, number);
      EXPECT_EQ(failureNumberOf([this] { siteFile_.updateSiteRecord("b.b.b", 'S'); }), number);
      EXPECT_TRUE(file() == before || file() == after) << "call " << call;
      EXPECT_EQ(memory_.openFiles(), 0);
    }
  }
}

TEST_F(SiteFileTest, FailsWithTheNumberOfWhateverCallFailsOnAppending) {
  const std::string before = record("a.a.a") + record("b.b.b");
  givenTheFile(before);
  siteFile_.appendSiteRecord("c.c.c", 'S');
  const std::string after = file();
  const int calls = static_cast<int>(files_.calls().size());
  ASSERT_GE(calls, 4);  // open, length, write, sync
  for (int call = 1; call <= calls; ++call) {
    for (const int number : kFileFailures) {
      givenTheFile(before);
      files_.reset();
      files_.failAtCall(call, number);
      EXPECT_EQ(failureNumberOf([this] { siteFile_.appendSiteRecord("c.c.c", 'S'); }), number);
      EXPECT_TRUE(file() == before || file() == after) << "call " << call;
      EXPECT_EQ(memory_.openFiles(), 0);
    }
  }
}

TEST_F(SiteFileTest, FailsToUpdateBehindAnUnreadableRecord) {
  const std::string before = record("a.a.a") + record("b.b.b") + record("c.c.c");
  givenTheFile(before);
  files_.spoilBytes(322, 1, 57);
  EXPECT_EQ(failureNumberOf([this] { siteFile_.updateSiteRecord("c.c.c", 'S'); }), 57);
  EXPECT_EQ(file(), before);
}

TEST(AddRecordToTree, FailsAtThe51stLevelBeforeANodeIsTouched) {
  SiteTree tree;
  tree.addRoot();
  EXPECT_EQ(
      failureNumberOf([&tree] { tree.addMissingLevels(addressLevels(addressOfLevels(51)), 'N'); }),
      9);
  EXPECT_EQ(tree.size(), 1U);
}

TEST_F(SiteFileTest, RemembersWhereEachAddressHasItsFirstRecord) {
  givenTheFile(record("a.b.c/x") + record("d.e.f") + record("a.b.c/x"));
  SiteTree tree;
  siteFile_.loadNodes(tree);
  EXPECT_EQ(tree.recordNumber(tree.at("a.b.c/x")), 1U);
  EXPECT_EQ(tree.recordNumber(tree.at("d.e.f")), 2U);
  EXPECT_EQ(tree.recordNumber(tree.at("a.b.c")), 0U);
}

TEST_F(SiteFileTest, UpdatesARecordThatIsWhereItWasWithoutSearching) {
  givenTheFile(record("a.b.c") + record("d.e.f") + record("g.h.i"));
  EXPECT_EQ(siteFile_.updateSiteRecord("g.h.i", 'S', 3), 3U);
  EXPECT_EQ(files_.callsOf(FileCall::ReadAt), 1);
  EXPECT_EQ(file(), record("a.b.c") + record("d.e.f") + record("g.h.i", 'S', "7/9/26 3:04:05 PM~"));
}

TEST_F(SiteFileTest, SearchesForARecordThatIsNoLongerWhereItWas) {
  for (const std::uint64_t stale : {1U, 3U, 4U, 4'000'000'000U}) {
    givenTheFile(record("a.b.c") + record("d.e.f") + record("g.h.i"));
    EXPECT_EQ(siteFile_.updateSiteRecord("d.e.f", 'S', stale), 2U);
    EXPECT_EQ(file(),
              record("a.b.c") + record("d.e.f", 'S', "7/9/26 3:04:05 PM~") + record("g.h.i"));
  }
}

}  // namespace
}  // namespace quorrix
