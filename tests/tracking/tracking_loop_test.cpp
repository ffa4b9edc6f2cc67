#include "tracking/tracking_loop.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "support/counting_event_pump.h"
#include "support/failure_number.h"
#include "support/fake_clock.h"
#include "support/fake_tracking_display.h"
#include "support/fake_window_system.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"
#include "support/scripted_message_box.h"

namespace quorrix {
namespace {

using test::failureNumberOf;
using test::FakeWindow;
using test::FileCall;
using test::WindowCall;

using Texts = std::vector<std::string>;

constexpr const char* kTooMuchData =
    "Error: Quorrix is unable to record the site address because it has too much data to manage. "
    "Archive the presently displayed sites to correct the problem. Quorrix will not be able to "
    "record site data until the current display is archived.";

// A record as stored in the file: 300 bytes of address, the flag, 21 bytes of stamp.
std::string record(std::string address, char flag, std::string stamp = "7/9/26 3:04:05 PM~") {
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

FakeWindow idleBrowser(std::string address) {
  return test::browserWindow("A page - Netscape", std::move(address), "Document: Done");
}

FakeWindow connectingBrowser(std::string address) {
  return test::browserWindow("A page - Netscape", std::move(address), "Connect: Contacting host");
}

// A tree, an empty site file, a desktop, and the loop that tracks it.
struct TrackingSession {
  explicit TrackingSession(std::size_t maxSearchedNodes = kMaxSearchedNodes)
      : loop_({.windows = windows_,
               .tree = tree_,
               .siteFile = siteFile_,
               .events = events_,
               .messageBox = messageBox_,
               .display = display_},
              maxSearchedNodes) {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
    clock_.set({.year = 2026, .month = 7, .day = 9, .hour = 15, .minute = 4, .second = 5});
    siteFile_.loadNodes(tree_);
    files_.reset();
  }

  // The user stops tracking after this many passes, while events are processed.
  void stopAfter(int passes) {
    events_.atEachPump([this, left = passes](int) mutable {
      if (loop_.isTracking() && --left == 0) loop_.stopTracking();
    });
  }

  // Tracks for as many passes as there are windows, showing one of them in each pass.
  void trackWhileShowing(std::vector<FakeWindow> windows) {
    stopAfter(static_cast<int>(windows.size()));
    const int before = windows_.enumerations();
    windows_.atEachEnumeration([this, before, windows](int enumeration) {
      windows_.show({windows.at(static_cast<std::size_t>(enumeration - before - 1))});
    });
    loop_.startTracking();
    windows_.atEachEnumeration(nullptr);
  }

  void visit(const std::string& address) { trackWhileShowing({connectingBrowser(address)}); }

  bool isInTree(std::string_view key) const { return tree_.find(key) != kNoNode; }
  char tagOf(std::string_view key) const { return tree_.tag(tree_.at(key)); }
  std::string selectedKey() const { return std::string(tree_.key(tree_.selected())); }

  const std::string& file() const { return memory_.bytesOf(paths_.currentNodesFile); }
  void givenTheFile(const std::string& bytes) {
    memory_.givenAFile(paths_.currentNodesFile, bytes);
    siteFile_.readSiteFile(tree_);
    files_.reset();
  }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  test::FakeClock clock_;
  WorkingPaths paths_;
  SiteFile siteFile_{files_, clock_, paths_};
  SiteTree tree_;
  test::FakeWindowSystem windows_;
  test::CountingEventPump events_;
  test::ScriptedMessageBox messageBox_;
  test::FakeTrackingDisplay display_;
  TrackingLoop loop_;
};

class TrackingLoopTest : public testing::Test, protected TrackingSession {};

TEST_F(TrackingLoopTest, IsNotTrackingAtFirst) {
  EXPECT_FALSE(loop_.isTracking());
  EXPECT_FALSE(loop_.addressFound());
}

TEST_F(TrackingLoopTest, SaysThatItTracksAndThatItStopped) {
  stopAfter(3);
  loop_.startTracking();
  EXPECT_EQ(display_.statuses(), (Texts{"Tracking websites.", "Tracking websites stopped."}));
  EXPECT_FALSE(loop_.isTracking());
  EXPECT_EQ(windows_.enumerations(), 3);
}

TEST_F(TrackingLoopTest, SaysThatItTracksUntilItIsStopped) {
  events_.atPump(2, [this] {
    EXPECT_TRUE(loop_.isTracking());
    EXPECT_EQ(display_.statuses(), Texts{"Tracking websites."});
    loop_.stopTracking();
    EXPECT_FALSE(loop_.isTracking());
    EXPECT_EQ(events_.pumps(), 3);  // stopping processes pending events once
  });
  loop_.startTracking();
  EXPECT_EQ(events_.pumps(), 3);
}

TEST_F(TrackingLoopTest, PausesBetweenPassesOnly) {
  stopAfter(3);
  loop_.startTracking();
  EXPECT_EQ(events_.pauses(), 2);
}

TEST_F(TrackingLoopTest, PreparesTheWindowSystemAtEachStart) {
  stopAfter(3);
  loop_.startTracking();
  EXPECT_EQ(windows_.preparations(), 1);
  stopAfter(1);
  loop_.startTracking();
  EXPECT_EQ(windows_.preparations(), 2);
}

TEST_F(TrackingLoopTest, LeavesEverythingAsItIsWithoutABrowser) {
  stopAfter(5);
  loop_.startTracking();
  EXPECT_EQ(tree_.size(), 1U);
  EXPECT_TRUE(files_.calls().empty());
  EXPECT_EQ(display_.nodesMadeVisible(), std::vector<NodeId>{});
}

// The address in six lines of fifty, then the flag, then the stamp.
TEST_F(TrackingLoopTest, RecordsAVisitInTheTreeAndInTheFile) {
  visit("https://www.example.org/manual/intro.html/");
  EXPECT_EQ(tree_.size(), 4U);
  EXPECT_EQ(tree_.text(tree_.at("www.example.org")), "www.example.org");
  EXPECT_EQ(tree_.text(tree_.at("www.example.org/manual")), "manual");
  EXPECT_EQ(tree_.text(tree_.at("www.example.org/manual/intro.html")), "intro.html");
  EXPECT_EQ(file(),
            "www.example.org/manual/intro.html                 "
            "                                                  "
            "                                                  "
            "                                                  "
            "                                                  "
            "                                                  "
            "S"
            "7/9/26 3:04:05 PM~   ");
  EXPECT_TRUE(memory_.isSynced(paths_.currentNodesFile));
}

TEST_F(TrackingLoopTest, StampsTheRecordOfAnAddressVisitedAgain) {
  visit("http://one.two.three/a");
  clock_.set({.year = 2027, .month = 12, .day = 31, .hour = 0, .minute = 0, .second = 59});
  visit("https://one.two.three/a");
  EXPECT_EQ(file(), record("one.two.three/a", 'S', "12/31/27 12:00:59 AM~"));
  EXPECT_EQ(tree_.size(), 3U);
}

TEST_F(TrackingLoopTest, RecordsOnTheFirstPassWhateverTheStatusBarSays) {
  trackWhileShowing({idleBrowser("http://one.two.three/a")});
  EXPECT_EQ(file(), record("one.two.three/a", 'N'));
}

TEST_F(TrackingLoopTest, RecordsAKnownAddressAgainOnTheFirstPass) {
  givenTheFile(record("one.two.three/a", 'N', "1/2/25 3:04:05 AM~"));
  trackWhileShowing({idleBrowser("https://one.two.three/a")});
  EXPECT_EQ(file(), record("one.two.three/a", 'S'));
  EXPECT_EQ(tagOf("one.two.three/a"), 'S');
}

TEST_F(TrackingLoopTest, RecordsOnLaterPassesOnlyWhatIsBeingVisited) {
  trackWhileShowing({idleBrowser("http://first.pass.one"), idleBrowser("http://second.pass.idle"),
                     connectingBrowser("http://third.pass.visit"),
                     idleBrowser("http://fourth.pass.idle"),
                     test::browserWindow("Netscape", "http://fifth.pass.loads", "42% of 9K")});
  EXPECT_EQ(file(), record("first.pass.one", 'N') + record("third.pass.visit", 'N') +
                        record("fifth.pass.loads", 'N'));
  EXPECT_EQ(tree_.size(), 4U);
}

TEST_F(TrackingLoopTest, WritesOncePerVisitHoweverLongThePageStays) {
  trackWhileShowing({connectingBrowser("http://one.two.three"), idleBrowser("http://one.two.three"),
                     idleBrowser("http://one.two.three")});
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 1);
}

TEST_F(TrackingLoopTest, SpendsTheFirstPassOnWhatIsThereThen) {
  trackWhileShowing(
      {{.windowClass = "Frame", .title = "Text Editor"}, idleBrowser("http://one.two.three")});
  EXPECT_EQ(tree_.size(), 1U);
  EXPECT_EQ(file(), "");
}

TEST_F(TrackingLoopTest, SpendsTheFirstPassAlsoOnAnAddressThatIsTooLong) {
  trackWhileShowing({idleBrowser("http://one.two.three/" + std::string(300, 'x')),
                     idleBrowser("http://one.two.three")});
  EXPECT_EQ(tree_.size(), 1U);
}

TEST_F(TrackingLoopTest, ForgetsAVisitThatItDidNotRecord) {
  // In the pass of the visit there is no address yet; the next pass is not a visit.
  trackWhileShowing({idleBrowser(""), connectingBrowser(""), idleBrowser("http://one.two.three")});
  EXPECT_EQ(tree_.size(), 1U);
}

TEST_F(TrackingLoopTest, HasAFirstPassAtEachStart) {
  trackWhileShowing({idleBrowser("http://one.two.three")});
  clock_.set({.year = 2026, .month = 7, .day = 9, .hour = 16, .minute = 0, .second = 0});
  trackWhileShowing({idleBrowser("http://one.two.three")});
  EXPECT_EQ(file(), record("one.two.three", 'N', "7/9/26 4:00:00 PM~"));
}

TEST_F(TrackingLoopTest, PassesOverWhatIsNoValidAddress) {
  for (const char* address : {"", "localhost", "http://two.three/page", "ftp://one.two.three/pub",
                              "about:blank", "half.typed.", "ROOT", "ROOT/a"}) {
    visit(address);
  }
  EXPECT_EQ(tree_.size(), 1U);
  EXPECT_TRUE(files_.calls().empty());
}

TEST_F(TrackingLoopTest, RecordsAnAddressOf300Characters) {
  const std::string address = "one.two.three/" + std::string(286, 'x');
  visit(address);
  EXPECT_EQ(file(), address + "U7/9/26 3:04:05 PM~   ");
}

TEST_F(TrackingLoopTest, PassesOverAnAddressOf301CharactersWithoutAWord) {
  visit("one.two.three/" + std::string(287, 'x'));
  visit("http://one.two.three/" + std::string(280, 'x'));  // its stored form would fit
  EXPECT_EQ(tree_.size(), 1U);
  EXPECT_TRUE(files_.calls().empty());
}

TEST_F(TrackingLoopTest, CutsTheBeginningForASchemeAnywhere) {
  visit("one.two.three/?to=http://four");
  EXPECT_EQ(file(), record(".three/?to=http://four", 'U'));
  EXPECT_TRUE(isInTree(".three/?to=http:/"));
}

TEST_F(TrackingLoopTest, CountsLetterCase) {
  visit("http://one.two.three/a");
  visit("http://one.two.three/A");
  EXPECT_EQ(file(), record("one.two.three/a", 'N') + record("one.two.three/A", 'N'));
}

TEST_F(TrackingLoopTest, KeepsEmptyLevels) {
  visit("http://one.two.three//a//");
  EXPECT_EQ(tree_.size(), 5U);
  EXPECT_EQ(file(), record("one.two.three//a/", 'N'));
}

TEST_F(TrackingLoopTest, WritesNothingForAnInnerLevelOfALongerAddress) {
  visit("http://one.two.three/a/b");
  EXPECT_EQ(tree_.size(), 4U);
  EXPECT_EQ(file(), record("one.two.three/a/b", 'N'));
  visit("https://one.two.three/a");
  EXPECT_EQ(tree_.size(), 4U);
  EXPECT_EQ(file(), record("one.two.three/a/b", 'N'));
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 1);
  EXPECT_EQ(selectedKey(), "one.two.three/a");
  EXPECT_EQ(tagOf("one.two.three/a"), 'S');
}

TEST_F(TrackingLoopTest, AppendsALongerAddressOfAKnownOne) {
  visit("http://one.two.three/a");
  visit("http://one.two.three/a/b");
  EXPECT_EQ(file(), record("one.two.three/a", 'N') + record("one.two.three/a/b", 'N'));
}

TEST_F(TrackingLoopTest, StampsTheFirstRecordOfASiteThatWasClearedInBetween) {
  givenTheFile(record("one.two.three", 'N', "1/1/20 1:00:00 AM~"));
  tree_.clear();
  visit("https://one.two.three");
  EXPECT_EQ(file(),
            record("one.two.three", 'N', "1/1/20 1:00:00 AM~") + record("one.two.three", 'S'));
  visit("https://one.two.three");
  EXPECT_EQ(file(), record("one.two.three", 'S') + record("one.two.three", 'S'));
}

TEST_F(TrackingLoopTest, WritesAnAddressThatBeginsWithABlankOnlyOnce) {
  // It does not read back as a site, so no record is found to update.
  visit(" one.two.three");
  EXPECT_TRUE(isInTree(" one.two.three"));
  visit(" one.two.three");
  EXPECT_EQ(file(), record(" one.two.three", 'U'));
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 1);
}

TEST_F(TrackingLoopTest, TagsTheNodeAndEverythingAboveIt) {
  visit("http://one.two.three/a/b");
  visit("http://one.two.three/c");
  visit("https://one.two.three/a/b");
  EXPECT_EQ(tagOf("one.two.three/a/b"), 'S');
  EXPECT_EQ(tagOf("one.two.three/a"), 'S');
  EXPECT_EQ(tagOf("one.two.three"), 'S');
  EXPECT_EQ(tagOf("one.two.three/c"), 'N');
  EXPECT_EQ(tagOf("ROOT"), kNoTag);
}

TEST_F(TrackingLoopTest, LeavesTheTagsBelowTheNode) {
  visit("http://one.two.three/a/b");
  visit("https://one.two.three/a");
  EXPECT_EQ(tagOf("one.two.three/a/b"), 'N');
  EXPECT_EQ(tagOf("one.two.three/a"), 'S');
  EXPECT_EQ(tagOf("one.two.three"), 'S');
}

TEST_F(TrackingLoopTest, StopsTaggingAtANodeWithTheRootsText) {
  visit("http://one.two.three/www/a/b");
  EXPECT_EQ(tagOf("one.two.three/www/a/b"), 'N');
  EXPECT_EQ(tagOf("one.two.three/www/a"), 'N');
  EXPECT_EQ(tagOf("one.two.three/www"), kNoTag);
  EXPECT_EQ(tagOf("one.two.three"), kNoTag);
}

TEST_F(TrackingLoopTest, TagsAVisitedNodeWithTheRootsTextItself) {
  visit("http://one.two.three/www");
  EXPECT_EQ(tagOf("one.two.three/www"), 'N');
  EXPECT_EQ(tagOf("one.two.three"), 'N');
}

TEST_F(TrackingLoopTest, ShowsAndSelectsTheNode) {
  visit("http://one.two.three/a");
  EXPECT_EQ(selectedKey(), "one.two.three/a");
  visit("http://one.two.three/b");
  visit("http://one.two.three/a");
  EXPECT_EQ(selectedKey(), "one.two.three/a");
  EXPECT_EQ(display_.nodesMadeVisible(),
            (std::vector<NodeId>{tree_.at("one.two.three/a"), tree_.at("one.two.three/b"),
                                 tree_.at("one.two.three/a")}));
}

TEST_F(TrackingLoopTest, KnowsWhetherTheLastAddressWasFound) {
  visit("http://one.two.three/a/b");
  EXPECT_FALSE(loop_.addressFound());
  visit("http://one.two.three/a");
  EXPECT_TRUE(loop_.addressFound());
  visit("http://one.two.three/a/c");
  EXPECT_FALSE(loop_.addressFound());
  visit("http://one.two.three/a/c");
  EXPECT_TRUE(loop_.addressFound());
}

TEST_F(TrackingLoopTest, KeepsWhetherTheLastAddressWasFoundUntilTheNextSearch) {
  visit("http://one.two.three");
  visit("http://one.two.three");
  visit("http://two.three");
  visit("");
  stopAfter(2);
  loop_.startTracking();
  EXPECT_TRUE(loop_.addressFound());
  EXPECT_EQ(failureNumberOf([this] { visit(addressOfLevels(51)); }), 9);
  EXPECT_TRUE(loop_.addressFound());
}

TEST_F(TrackingLoopTest, RecordsAnAddressOfFiftyLevels) {
  visit(addressOfLevels(50));
  EXPECT_EQ(tree_.size(), 51U);
  EXPECT_EQ(file(), record(addressOfLevels(50), 'U'));
}

TEST_F(TrackingLoopTest, FailsAtAnAddressOf51LevelsAndChangesNothing) {
  EXPECT_EQ(failureNumberOf([this] { visit(addressOfLevels(51)); }), 9);
  EXPECT_EQ(tree_.size(), 1U);
  EXPECT_EQ(file(), "");
  EXPECT_EQ(display_.statuses(), Texts{"Tracking websites."});
}

TEST_F(TrackingLoopTest, StopsAfterAFailureWithoutRunningEvents) {
  EXPECT_EQ(failureNumberOf([this] { visit(addressOfLevels(51)); }), 9);
  EXPECT_TRUE(loop_.isTracking());
  loop_.stopAfterFailure();
  EXPECT_FALSE(loop_.isTracking());
  EXPECT_EQ(display_.statuses(), (Texts{"Tracking websites.", "Tracking websites stopped."}));
  EXPECT_EQ(events_.pumps(), 0);
}

TEST_F(TrackingLoopTest, TracksAgainAfterAFailure) {
  EXPECT_EQ(failureNumberOf([this] { visit(addressOfLevels(51)); }), 9);
  loop_.stopAfterFailure();
  visit("http://one.two.three");
  EXPECT_EQ(file(), record("one.two.three", 'N'));
}

TEST_F(TrackingLoopTest, PassesOnAFailureOfTheScan) {
  for (const int number : {7, 57, 68, 51}) {
    windows_.failAt(WindowCall::GetClassNameA, 1, number);
    EXPECT_EQ(failureNumberOf([this] { visit("http://one.two.three"); }), number);
    loop_.stopAfterFailure();
  }
  EXPECT_EQ(tree_.size(), 1U);
}

TEST_F(TrackingLoopTest, PassesOnAFailureOfTheTreesDisplay) {
  display_.failToMakeVisible(7);
  EXPECT_EQ(failureNumberOf([this] { visit("http://one.two.three"); }), 7);
  EXPECT_EQ(file(), record("one.two.three", 'N'));
  EXPECT_EQ(selectedKey(), "ROOT");
}

void expectFailureWithoutDamage(const std::string& address, FileCall call, int number) {
  TrackingSession session;
  session.givenTheFile(record("a.a.a", 'N') + record("b.b.b", 'N') + record("c.c.c", 'N'));
  session.files_.failAtCall(call, 1, number);
  EXPECT_EQ(failureNumberOf([&] { session.visit(address); }), number);
  EXPECT_EQ(session.file().substr(0, 322), record("a.a.a", 'N'));
  EXPECT_EQ(session.file().substr(644, 322), record("c.c.c", 'N'));
  EXPECT_EQ(session.memory_.openFiles(), 0);
}

TEST(TrackingLoopOnABadDisk, PassesOnEveryFailureAndLeavesTheOtherRecords) {
  for (const int number : {7, 53, 57, 61, 67, 68, 71, 75, 76, 51}) {
    for (const FileCall call :
         {FileCall::OpenRandomAccess, FileCall::Length, FileCall::WriteAt, FileCall::Sync}) {
      expectFailureWithoutDamage("https://b.b.b", call, number);
      expectFailureWithoutDamage("https://d.d.d", call, number);
    }
    expectFailureWithoutDamage("https://b.b.b", FileCall::ReadAt, number);
  }
}

TEST_F(TrackingLoopTest, LeavesANodeWhoseRecordCouldNotBeWritten) {
  files_.failAtCall(FileCall::WriteAt, 1, 61);
  EXPECT_EQ(failureNumberOf([this] { visit("http://one.two.three"); }), 61);
  loop_.stopAfterFailure();
  EXPECT_TRUE(isInTree("one.two.three"));
  EXPECT_EQ(tagOf("one.two.three"), kNoTag);
  EXPECT_EQ(selectedKey(), "ROOT");
  EXPECT_EQ(display_.nodesMadeVisible(), std::vector<NodeId>{});
}

TEST_F(TrackingLoopTest, WritesARecordThatFailedAtTheNextVisit) {
  files_.failAtCall(FileCall::WriteAt, 1, 61);
  EXPECT_EQ(failureNumberOf([this] { visit("http://one.two.three/a"); }), 61);
  loop_.stopAfterFailure();
  visit("http://one.two.three/a");
  visit("http://one.two.three");  // an inner level has no record
  EXPECT_EQ(file(), record("one.two.three/a", 'N'));
}

TEST_F(TrackingLoopTest, WritesARecordOnceThoughItsSyncFailed) {
  files_.failAtCall(FileCall::Sync, 1, 57);
  EXPECT_EQ(failureNumberOf([this] { visit("http://one.two.three/a"); }), 57);
  loop_.stopAfterFailure();
  visit("http://one.two.three/a");
  EXPECT_EQ(file(), record("one.two.three/a", 'N'));
}

TEST_F(TrackingLoopTest, WritesARecordForWhichMemoryRanOutAtTheNextVisit) {
  files_.onEveryCall([] { throw std::bad_alloc(); });
  EXPECT_THROW(visit("http://one.two.three/a"), std::bad_alloc);
  loop_.stopAfterFailure();
  files_.reset();
  visit("http://one.two.three/a");
  EXPECT_EQ(file(), record("one.two.three/a", 'N'));
}

// --- a file that another program has locked --------------------------------------------------

// Holds the site file open from the second pass until pass `last`.
struct OtherProgram {
  void atPass(int pass, TrackingSession& session, int last) {
    if (pass == 2) file = session.memory_.openRandomAccess(session.paths_.currentNodesFile);
    if (pass == last) file.reset();
  }
  std::unique_ptr<RandomAccessFile> file;
};

TEST_F(TrackingLoopTest, WritesAVisitWhenTheFileIsNotLockedAnyMore) {
  OtherProgram other;
  events_.atEachPump([&, pass = 1](int) mutable {
    if (!loop_.isTracking()) return;
    other.atPass(++pass, *this, 30);
    if (pass == 60) loop_.stopTracking();
  });
  windows_.atEachEnumeration([this](int enumeration) {
    if (enumeration == 1) windows_.show({connectingBrowser("http://one.two.three/a")});
    if (enumeration == 5) windows_.show({connectingBrowser("http://one.two.three/b")});
    if (enumeration == 6) windows_.show({connectingBrowser("http://one.two.three/a")});
    if (enumeration == 7) windows_.show({idleBrowser("http://one.two.three/a")});
    if (enumeration == 2) windows_.show({idleBrowser("http://one.two.three/a")});
  });
  loop_.startTracking();
  EXPECT_EQ(file(), record("one.two.three/a", 'N') + record("one.two.three/b", 'N'));
  EXPECT_EQ(selectedKey(), "one.two.three/a");
}

TEST_F(TrackingLoopTest, WritesAWaitingVisitWhenItIsStopped) {
  OtherProgram other;
  events_.atEachPump([&, pass = 1](int) mutable {
    if (!loop_.isTracking()) return;
    other.atPass(++pass, *this, 6);
    if (pass == 8) loop_.stopTracking();
  });
  windows_.atEachEnumeration([this](int enumeration) {
    windows_.show({enumeration == 4 ? connectingBrowser("http://one.two.three/b")
                                    : idleBrowser("http://one.two.three/a")});
  });
  loop_.startTracking();
  EXPECT_EQ(file(), record("one.two.three/a", 'N') + record("one.two.three/b", 'N'));
}

TEST_F(TrackingLoopTest, FailsWhenAWaitingVisitCannotBeWrittenAtTheEnd) {
  OtherProgram other;
  events_.atEachPump([&, pass = 1](int) mutable {
    if (!loop_.isTracking()) return;
    other.atPass(++pass, *this, 100);
    if (pass == 8) loop_.stopTracking();
  });
  windows_.atEachEnumeration([this](int enumeration) {
    windows_.show({enumeration == 4 ? connectingBrowser("http://one.two.three/b")
                                    : idleBrowser("http://one.two.three/a")});
  });
  EXPECT_EQ(failureNumberOf([this] { loop_.startTracking(); }), 75);
  other.file.reset();
  EXPECT_EQ(file(), record("one.two.three/a", 'N'));
}

TEST_F(TrackingLoopTest, WritesAWaitingVisitWhenAnotherFailureEndsIt) {
  OtherProgram other;
  events_.atEachPump([&, pass = 1](int) mutable { other.atPass(++pass, *this, 6); });
  windows_.atEachEnumeration([this](int enumeration) {
    if (enumeration == 7) throw Failure(57);
    windows_.show({enumeration == 4 ? connectingBrowser("http://one.two.three/b")
                                    : idleBrowser("http://one.two.three/a")});
  });
  EXPECT_EQ(failureNumberOf([this] { loop_.startTracking(); }), 57);
  EXPECT_EQ(file(), record("one.two.three/a", 'N') + record("one.two.three/b", 'N'));
}

// The waiting visit is not written, because the second failure hits the same operation.
void expectFirstFailure(TrackingSession& session, const std::function<void()>& secondFailure) {
  OtherProgram other;
  session.events_.atEachPump([&, pass = 1](int) mutable { other.atPass(++pass, session, 6); });
  session.windows_.atEachEnumeration([&](int enumeration) {
    session.windows_.show({enumeration == 4 ? connectingBrowser("http://one.two.three/b")
                                            : idleBrowser("http://one.two.three/a")});
    if (enumeration < 7) return;
    secondFailure();
    throw Failure(57);
  });
  EXPECT_EQ(failureNumberOf([&] { session.loop_.startTracking(); }), 57);
  EXPECT_EQ(session.file(), record("one.two.three/a", 'N'));
  session.loop_.stopAfterFailure();
  session.files_.reset();
  session.events_.atEachPump(nullptr);
  session.visit("http://one.two.three/b");
  EXPECT_EQ(session.file(), record("one.two.three/a", 'N') + record("one.two.three/b", 'N'));
}

TEST_F(TrackingLoopTest, PassesOnTheFirstFailureIfAWaitingVisitCannotBeWrittenEither) {
  expectFirstFailure(*this, [this] { files_.failAtCall(FileCall::WriteAt, 1, 61); });
}

TEST_F(TrackingLoopTest, PassesOnTheFirstFailureIfMemoryRunsOutForAWaitingVisit) {
  expectFirstFailure(*this, [this] { files_.onEveryCall([] { throw std::bad_alloc(); }); });
}

TEST_F(TrackingLoopTest, LosesAWaitingVisitWithoutAWordWhenAbandoned) {
  OtherProgram other;
  events_.atEachPump([&, pass = 1](int) mutable {
    other.atPass(++pass, *this, 100);
    if (pass == 8) loop_.abandon();
  });
  windows_.atEachEnumeration([this](int enumeration) {
    windows_.show({enumeration == 4 ? connectingBrowser("http://one.two.three/b")
                                    : idleBrowser("http://one.two.three/a")});
  });
  loop_.startTracking();
  other.file.reset();
  EXPECT_EQ(file(), record("one.two.three/a", 'N'));
}

// The user deletes the site from the display while its visit waits.
TEST_F(TrackingLoopTest, StampsTheRecordOfAWaitingVisitWhoseNodeIsGone) {
  givenTheFile(record("one.two.three/b", 'N', "1/2/25 3:04:05 AM~"));
  OtherProgram other;
  events_.atEachPump([&, pass = 1](int) mutable {
    if (!loop_.isTracking()) return;
    other.atPass(++pass, *this, 6);
    if (pass == 5) tree_.remove(tree_.at("one.two.three"));
    if (pass == 8) loop_.stopTracking();
  });
  windows_.atEachEnumeration([this](int enumeration) {
    windows_.show({enumeration == 4 ? connectingBrowser("https://one.two.three/b")
                                    : idleBrowser("http://one.two.three/a")});
  });
  EXPECT_EQ(failureNumberOf([this] { loop_.startTracking(); }), 35601);
  EXPECT_EQ(file(), record("one.two.three/b", 'S') + record("one.two.three/a", 'N'));
}

TEST_F(TrackingLoopTest, KeepsNoVisitForTheNextStart) {
  OtherProgram other;
  events_.atEachPump([&, pass = 1](int) mutable {
    other.atPass(++pass, *this, 100);
    if (pass == 11) loop_.stopTracking();
  });
  windows_.atEachEnumeration([this](int enumeration) {
    if (enumeration == 7) throw Failure(57);
    windows_.show({enumeration == 4 ? connectingBrowser("http://one.two.three/b")
                                    : idleBrowser("http://one.two.three/a")});
  });
  EXPECT_EQ(failureNumberOf([this] { loop_.startTracking(); }), 57);
  other.file.reset();
  tree_.clear();
  loop_.startTracking();
  EXPECT_EQ(file(), record("one.two.three/a", 'N') + record("one.two.three/a", 'N'));
}

TEST_F(TrackingLoopTest, FailsWhereANodeCouldNotBeAdded) {
  class NoRoom final : public SiteTreeObserver {
   public:
    void treeWillBeReset() override {}
    void treeWasReset() override {}
    void nodeWillBeAdded(NodeId, std::size_t) override { throw Failure(7); }
    void nodeWasAdded(NodeId) override {}
    void nodeWillBeRemoved(NodeId, std::size_t) override {}
    void nodeWasRemoved() override {}
    void selectionChanged(NodeId) override {}
  };
  NoRoom noRoom;
  tree_.setObserver(&noRoom);
  EXPECT_EQ(failureNumberOf([this] { visit("http://one.two.three"); }), 35601);
  tree_.setObserver(nullptr);
  EXPECT_EQ(tree_.size(), 1U);
  EXPECT_EQ(file(), record("one.two.three", 'N'));
}

TEST_F(TrackingLoopTest, RunsASecondLoopInsideTheFirst) {
  windows_.show({idleBrowser("http://one.two.three")});
  events_.atPump(2, [this] {
    EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 1);
    loop_.startTracking();
    EXPECT_FALSE(loop_.isTracking());
  });
  events_.atPump(4, [this] {
    // The second loop has its own first pass.
    EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 2);
    loop_.stopTracking();
  });
  loop_.startTracking();
  EXPECT_EQ(display_.statuses(),
            (Texts{"Tracking websites.", "Tracking websites.", "Tracking websites stopped."}));
  EXPECT_EQ(windows_.enumerations(), 4);  // two in each loop
  EXPECT_EQ(events_.pumps(), 5);
}

TEST_F(TrackingLoopTest, EndsBothLoopsAfterAFailureOfTheSecond) {
  events_.atPump(1, [this] {
    EXPECT_EQ(failureNumberOf([this] { loop_.startTracking(); }), 57);
    loop_.stopAfterFailure();
  });
  windows_.failAt(WindowCall::EnumWindows, 2, 57);
  loop_.startTracking();
  EXPECT_FALSE(loop_.isTracking());
  EXPECT_EQ(events_.pumps(), 1);
}

TEST_F(TrackingLoopTest, EndsWithoutAWordWhenAbandoned) {
  events_.atPump(2, [this] { loop_.abandon(); });
  loop_.startTracking();
  EXPECT_FALSE(loop_.isTracking());
  EXPECT_EQ(display_.statuses(), Texts{"Tracking websites."});
  EXPECT_EQ(windows_.enumerations(), 2);
  EXPECT_EQ(events_.pumps(), 2);
  EXPECT_EQ(events_.pauses(), 1);
}

// --- Browsers that cannot be read -------------------------------------------------

using Unreadable = std::vector<UnreadableBrowser>;

const UnreadableBrowser kEarlyChromium{.name = "Chromium",
                                       .reason = UnreadableBrowser::Reason::StartedTooEarly};
const UnreadableBrowser kLonelyChromium{.name = "Chromium",
                                        .reason = UnreadableBrowser::Reason::NoBus};
const UnreadableBrowser kStrangeFirefox{.name = "Mozilla Firefox",
                                        .reason = UnreadableBrowser::Reason::UnknownKind};

TEST_F(TrackingLoopTest, SaysNothingOfBrowsersWhileAllCanBeRead) {
  stopAfter(3);
  loop_.startTracking();
  EXPECT_TRUE(display_.unreadableBrowsers().empty());
}

TEST_F(TrackingLoopTest, ShowsTheBrowsersThatCannotBeReadAfterAScan) {
  windows_.atEachEnumeration([this](int enumeration) {
    if (enumeration > 1) return;
    EXPECT_TRUE(display_.unreadableBrowsers().empty());
    windows_.setUnreadable({kEarlyChromium});
  });
  events_.atPump(1, [this] {
    EXPECT_EQ(display_.unreadableBrowsers(), std::vector<Unreadable>{{kEarlyChromium}});
  });
  stopAfter(2);
  loop_.startTracking();
}

TEST_F(TrackingLoopTest, ShowsUnreadableBrowsersOnlyWhenTheyChange) {
  const std::vector<Unreadable> passes = {{kEarlyChromium},
                                          {kEarlyChromium},
                                          {kEarlyChromium, kStrangeFirefox},
                                          {kLonelyChromium},
                                          {kLonelyChromium},
                                          {},
                                          {},
                                          {kEarlyChromium}};
  windows_.atEachEnumeration([&](int enumeration) {
    windows_.setUnreadable(passes.at(static_cast<std::size_t>(enumeration - 1)));
  });
  stopAfter(8);
  loop_.startTracking();
  EXPECT_EQ(display_.unreadableBrowsers(),
            (std::vector<Unreadable>{{kEarlyChromium},
                                     {kEarlyChromium, kStrangeFirefox},
                                     {kLonelyChromium},
                                     {},
                                     {kEarlyChromium},
                                     {}}));
}

TEST_F(TrackingLoopTest, ShowsNoUnreadableBrowserOnceItIsStopped) {
  windows_.setUnreadable({kEarlyChromium});
  stopAfter(2);
  loop_.startTracking();
  EXPECT_EQ(display_.unreadableBrowsers(), (std::vector<Unreadable>{{kEarlyChromium}, {}}));
  loop_.stopTracking();
  EXPECT_EQ(display_.unreadableBrowsers().size(), 2U);
}

TEST_F(TrackingLoopTest, ShowsNoUnreadableBrowserAfterAFailure) {
  windows_.setUnreadable({kEarlyChromium});
  windows_.failAt(WindowCall::EnumWindows, 2, 57);
  EXPECT_EQ(failureNumberOf([this] { loop_.startTracking(); }), 57);
  EXPECT_EQ(display_.unreadableBrowsers(), std::vector<Unreadable>{{kEarlyChromium}});
  loop_.stopAfterFailure();
  EXPECT_EQ(display_.unreadableBrowsers(), (std::vector<Unreadable>{{kEarlyChromium}, {}}));
}

TEST_F(TrackingLoopTest, ShowsUnreadableBrowsersAgainAtTheNextStart) {
  windows_.setUnreadable({kEarlyChromium});
  for (int start = 1; start <= 2; ++start) {
    stopAfter(1);
    loop_.startTracking();
  }
  EXPECT_EQ(display_.unreadableBrowsers(),
            (std::vector<Unreadable>{{kEarlyChromium}, {}, {kEarlyChromium}, {}}));
}

TEST_F(TrackingLoopTest, ShowsUnreadableBrowsersOnceForBothLoops) {
  windows_.setUnreadable({kEarlyChromium});
  events_.atPump(1, [this] { loop_.startTracking(); });
  events_.atPump(2, [this] { loop_.stopTracking(); });
  loop_.startTracking();
  EXPECT_EQ(display_.unreadableBrowsers(), (std::vector<Unreadable>{{kEarlyChromium}, {}}));
}

TEST_F(TrackingLoopTest, FollowsTheFileThatIsInUseNow) {
  memory_.givenAFolder("Other");
  visit("http://one.two.three");
  paths_.setFolder("Other");
  visit("http://four.five.six");
  EXPECT_EQ(memory_.bytesOf("Data/nodes.dat"), record("one.two.three", 'N'));
  EXPECT_EQ(memory_.bytesOf("Other/nodes.dat"), record("four.five.six", 'N'));
}

TEST_F(TrackingLoopTest, BringsTheSameTreeBackAtTheNextStart) {
  for (const char* address : {"http://b.b.b/2", "https://a.a.a", "b.b.b/1/x", "http://b.b.b/1"}) {
    visit(address);
  }
  SiteTree loaded;
  siteFile_.loadNodes(loaded);
  ASSERT_EQ(loaded.size(), tree_.size());
  for (NodeId node = 0; node < loaded.size(); ++node) {
    EXPECT_EQ(loaded.key(node), tree_.key(node));
    EXPECT_EQ(loaded.text(node), tree_.text(node));
  }
}

// In these tests, a tree of more than three nodes cannot be searched.
class CrowdedTrackingLoopTest : public testing::Test, protected TrackingSession {
 protected:
  CrowdedTrackingLoopTest() : TrackingSession(3) {}
};

TEST_F(CrowdedTrackingLoopTest, RecordsWhileTheTreeCanBeSearched) {
  visit("http://one.two.three/a");
  visit("http://one.two.three/b/c");  // three nodes are searched; then there are five
  EXPECT_EQ(tree_.size(), 5U);
  EXPECT_EQ(file(), record("one.two.three/a", 'N') + record("one.two.three/b/c", 'N'));
}

TEST_F(CrowdedTrackingLoopTest, SaysThatThereIsTooMuchDataAndRecordsNothing) {
  visit("http://one.two.three/a/b");
  const std::string before = file();
  messageBox_.expect(kTooMuchData, MessageBoxStyle::Critical);
  visit("http://four.five.six");
  messageBox_.expect(kTooMuchData, MessageBoxStyle::Critical);
  visit("https://one.two.three/a/b");
  EXPECT_TRUE(messageBox_.isThrough());
  EXPECT_EQ(tree_.size(), 4U);
  EXPECT_EQ(file(), before);
  EXPECT_EQ(tagOf("one.two.three/a/b"), 'N');
  EXPECT_FALSE(loop_.addressFound());
  EXPECT_EQ(display_.nodesMadeVisible().size(), 1U);
}

TEST_F(CrowdedTrackingLoopTest, HasFoundNothingWhenTheTreeCannotBeSearched) {
  visit("http://one.two.three/a");
  visit("http://one.two.three/a");
  EXPECT_TRUE(loop_.addressFound());
  tree_.addMissingLevels(addressLevels("four.five.six"), 'N');
  messageBox_.expect(kTooMuchData, MessageBoxStyle::Critical);
  visit("http://one.two.three/a");
  EXPECT_FALSE(loop_.addressFound());
}

TEST_F(CrowdedTrackingLoopTest, GoesOnTrackingAfterTheMessage) {
  visit("http://one.two.three/a/b");
  const int before = windows_.enumerations();
  messageBox_.expect(kTooMuchData, MessageBoxStyle::Critical);
  messageBox_.expect(kTooMuchData, MessageBoxStyle::Critical);
  trackWhileShowing({connectingBrowser("http://four.five.six"), idleBrowser("http://four.five.six"),
                     connectingBrowser("http://four.five.six")});
  EXPECT_EQ(windows_.enumerations() - before, 3);
  EXPECT_EQ(display_.statuses().back(), "Tracking websites stopped.");
}

TEST_F(CrowdedTrackingLoopTest, CanBeStoppedWhileTheMessageIsOpen) {
  visit("http://one.two.three/a/b");
  const int before = windows_.enumerations();
  messageBox_.expect(kTooMuchData, MessageBoxStyle::Critical, MessageBoxButton::Ok,
                     [this] { loop_.stopTracking(); });
  windows_.show({idleBrowser("http://four.five.six")});
  loop_.startTracking();
  EXPECT_EQ(windows_.enumerations() - before, 1);
}

TEST_F(CrowdedTrackingLoopTest, StillFailsAtAnAddressOf51Levels) {
  visit("http://one.two.three/a/b");
  EXPECT_EQ(failureNumberOf([this] { visit(addressOfLevels(51)); }), 9);
}

}  // namespace
}  // namespace quorrix
