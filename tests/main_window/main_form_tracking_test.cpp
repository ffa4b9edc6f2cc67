// Tracking as the user sees it in the main form: menus, caption, status bar, tree.
#include <gtest/gtest.h>

#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>

#include "main_window/main_form_stage.h"
#include "platform/failure.h"
#include "shell/resources.h"

namespace quorrix {
namespace {

using test::browserWindow;
using test::FileCall;
using test::MainFormStage;
using test::siteRecord;

class MainFormTrackingTest : public testing::Test {
 protected:
  // The browser's status bar shows that it is contacting the site.
  void visit(const std::string& address) {
    stage_.windows.show({browserWindow("A page - Netscape", address, "Connect: contacting")});
  }

  // Starts tracking. The user chooses Stop Tracking in the n-th pump, which is the n-th
  // pass of a first run; returns when tracking has ended.
  void trackUntilStoppedInPass(int pass) {
    stage_.events.atPump(pass, [this] { stage_.choose("FileStopTrack"); });
    stage_.track();
  }

  MainFormStage stage_;
};

using MainFormTracking = MainFormTrackingTest;

TEST_F(MainFormTracking, SaysThatItRunsAndThatItHasStopped) {
  stage_.start();
  std::string whileRunning;
  stage_.events.atPump(1, [&] { whileRunning = stage_.panelText(2); });
  trackUntilStoppedInPass(2);
  EXPECT_EQ(whileRunning, "Tracking websites.");
  EXPECT_EQ(stage_.panelText(2), "Tracking websites stopped.");
  EXPECT_EQ(stage_.panelText(1), "Last archive loaded: none");
  EXPECT_FALSE(stage_.form.isTracking());
}

TEST_F(MainFormTracking, ShowsInItsIconThatItRuns) {
  registerResources();
  stage_.start();
  const auto picture = [this] { return stage_.form.windowIcon().pixmap(32).toImage(); };
  QApplication::setWindowIcon(applicationIcon());
  const QImage before = picture();
  QImage whileRunning;
  stage_.events.atPump(1, [&] { whileRunning = picture(); });
  trackUntilStoppedInPass(2);
  EXPECT_NE(whileRunning, before);
  EXPECT_EQ(QColor(whileRunning.pixel(24, 24)), QColor(0xd3, 0x2f, 0x2f));
  EXPECT_EQ(whileRunning.pixel(8, 8), before.pixel(8, 8));
  EXPECT_EQ(picture(), before);
  QApplication::setWindowIcon({});
}

TEST_F(MainFormTracking, LeavesTheTreeAloneWithoutABrowser) {
  stage_.start(siteRecord("one.two.three", 'N'));
  trackUntilStoppedInPass(3);
  EXPECT_EQ(stage_.windows.enumerations(), 3);
  EXPECT_EQ(stage_.form.tree().size(), 2U);
  EXPECT_TRUE(stage_.files.calls().empty());
}

TEST_F(MainFormTracking, TakesTheSiteOutOfTheCaption) {
  stage_.start(siteRecord("one.two.three", 'N'));
  stage_.form.tree().select(stage_.node("one.two.three"));
  stage_.form.TreeView_MouseUp(mouse_button::kLeft, 0, 0, 0);
  ASSERT_EQ(stage_.caption(), "Quorrix - one.two.three");
  std::string whileRunning;
  stage_.events.atPump(1, [&] { whileRunning = stage_.caption(); });
  trackUntilStoppedInPass(2);
  EXPECT_EQ(whileRunning, "Quorrix");
  EXPECT_EQ(stage_.caption(), "Quorrix");
}

TEST_F(MainFormTracking, PutsAVisitIntoTheTreeAndTheSiteFile) {
  stage_.start();
  visit("http://one.two.three/a/b/");
  trackUntilStoppedInPass(1);
  EXPECT_EQ(stage_.form.tree().size(), 4U);
  EXPECT_EQ(stage_.form.tree().tag(stage_.node("one.two.three/a/b")), 'N');
  EXPECT_EQ(stage_.memory.bytesOf("/Quorrix/Data/nodes.dat"),
            siteRecord("one.two.three/a/b", 'N', "7/9/26 3:04:05 PM~"));
  EXPECT_TRUE(stage_.memory.isSynced("/Quorrix/Data/nodes.dat"));
  EXPECT_EQ(stage_.memory.openFiles(), 0);
}

TEST_F(MainFormTracking, ShowsTheVisitedPageAndSelectsIt) {
  std::string records;
  for (int i = 0; i < 60; ++i) {
    records += siteRecord("host" + std::to_string(i) + ".two.three/a", 'N');
  }
  stage_.start(records);
  ASSERT_FALSE(stage_.isOnScreen("host59.two.three"));
  visit("https://host59.two.three/a/b");
  trackUntilStoppedInPass(1);
  EXPECT_TRUE(stage_.isExpanded("host59.two.three"));
  EXPECT_TRUE(stage_.isExpanded("host59.two.three/a"));
  EXPECT_TRUE(stage_.isOnScreen("host59.two.three/a/b"));
  EXPECT_EQ(stage_.form.tree().selected(), stage_.node("host59.two.three/a/b"));
  EXPECT_EQ(stage_.treeView().currentIndex(), stage_.indexOf("host59.two.three/a/b"));
  EXPECT_EQ(stage_.form.tree().tag(stage_.node("host59.two.three")), 'S');
}

TEST_F(MainFormTracking, DoesNotNameTheVisitedPageInTheCaption) {
  stage_.start();
  visit("http://one.two.three/a");
  trackUntilStoppedInPass(2);
  EXPECT_EQ(stage_.caption(), "Quorrix");
}

TEST_F(MainFormTracking, LeavesTheWindowToTheUser) {
  stage_.start(siteRecord("one.two.three/a", 'N'));
  visit("http://four.five.six/x");
  stage_.events.atPump(2, [this] {
    stage_.form.tree().select(stage_.node("one.two.three"));
    stage_.form.TreeView_MouseUp(mouse_button::kLeft, 0, 0, 0);
    EXPECT_EQ(stage_.caption(), "Quorrix - one.two.three");
    EXPECT_TRUE(stage_.form.isEnabled());
    EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
    EXPECT_TRUE(stage_.action("FileStartTrack")->isEnabled());
  });
  stage_.events.atPump(3, [this] { stage_.windows.show({}); });
  trackUntilStoppedInPass(4);
  EXPECT_EQ(stage_.windows.enumerations(), 4);
}

TEST_F(MainFormTracking, LimitsShowAllToTheSiteOnceAVisitWasKnownAlready) {
  stage_.start(siteRecord("one.two.three/a/b/c", 'N') + siteRecord("four.five.six", 'N'));
  visit("http://four.five.six");
  trackUntilStoppedInPass(1);
  stage_.form.tree().select(stage_.node("one.two.three"));
  stage_.form.PopUpShowAll_Click();
  EXPECT_TRUE(stage_.isExpanded("one.two.three"));
  EXPECT_FALSE(stage_.isExpanded("one.two.three/a"));
}

TEST_F(MainFormTracking, DoesNotLimitShowAllOnceAVisitWasNew) {
  stage_.start(siteRecord("one.two.three/a/b/c", 'N') + siteRecord("four.five.six", 'N'));
  visit("http://four.five.six");
  stage_.events.atPump(1, [this] { visit("http://new.host.example"); });
  trackUntilStoppedInPass(2);
  stage_.form.tree().select(stage_.node("one.two.three"));
  stage_.form.PopUpShowAll_Click();
  EXPECT_TRUE(stage_.isExpanded("one.two.three/a"));
  EXPECT_TRUE(stage_.isExpanded("one.two.three/a/b"));
}

TEST_F(MainFormTracking, StartedTwiceIsStoppedOnce) {
  stage_.start();
  stage_.events.atPump(1, [this] { stage_.choose("FileStartTrack"); });
  trackUntilStoppedInPass(3);
  EXPECT_EQ(stage_.windows.preparations(), 2);
  EXPECT_FALSE(stage_.form.isTracking());
  EXPECT_EQ(stage_.panelText(2), "Tracking websites stopped.");
  // One pass of the outer loop, two of the inner one.
  EXPECT_EQ(stage_.windows.enumerations(), 3);
}

TEST_F(MainFormTracking, StartedTwiceAtOnceIsStoppedOnce) {
  stage_.start();
  stage_.choose("FileStartTrack");
  trackUntilStoppedInPass(3);
  EXPECT_EQ(stage_.windows.preparations(), 2);
  EXPECT_FALSE(stage_.form.isTracking());
}

// A press over the accessibility bus is answered only when the command has returned.
TEST_F(MainFormTracking, BeginsOnceItsCommandHasReturned) {
  stage_.start();
  stage_.choose("FileStartTrack");
  EXPECT_TRUE(stage_.form.isTracking());
  EXPECT_EQ(stage_.windows.enumerations(), 0);
  EXPECT_EQ(stage_.events.pumps(), 0);
  stage_.events.atPump(1, [this] { stage_.choose("FileStopTrack"); });
  QCoreApplication::processEvents();
  EXPECT_EQ(stage_.windows.enumerations(), 1);
}

TEST_F(MainFormTracking, DoesNotBeginOnceItWasStopped) {
  stage_.start();
  stage_.choose("FileStartTrack");
  stage_.choose("FileStopTrack");
  EXPECT_FALSE(stage_.form.isTracking());
  QCoreApplication::processEvents();
  EXPECT_EQ(stage_.windows.enumerations(), 0);
  EXPECT_EQ(stage_.panelText(2), "Tracking websites stopped.");
}

TEST_F(MainFormTracking, BeginsOnceWhenItWasStartedStoppedAndStarted) {
  stage_.start();
  stage_.choose("FileStartTrack");
  stage_.choose("FileStopTrack");
  const int pumps = stage_.events.pumps();
  stage_.events.atPump(pumps + 2, [this] { stage_.choose("FileStopTrack"); });
  stage_.track();
  EXPECT_EQ(stage_.windows.preparations(), 1);
  EXPECT_EQ(stage_.windows.enumerations(), 2);
}

TEST_F(MainFormTracking, DoesNotBeginOnceItsWindowIsGone) {
  stage_.start();
  stage_.choose("FileStartTrack");
  stage_.form.close();
  QCoreApplication::processEvents();
  EXPECT_EQ(stage_.windows.enumerations(), 0);
  EXPECT_FALSE(stage_.form.isTracking());
}

TEST_F(MainFormTracking, LetsNoOtherCommandInBeforeItBegins) {
  stage_.start(siteRecord("one.two.three", 'N'));
  stage_.choose("FileStartTrack");
  for (const char* const command : {"FileSearch", "FileDelete", "FileClear", "FileArchive",
                                    "FileLoadArchive", "FileDeleteArchive"}) {
    stage_.messageBox.expect("You must stop tracking websites before using this feature.",
                             MessageBoxStyle::Information);
    stage_.choose(command);
    EXPECT_TRUE(stage_.messageBox.isThrough()) << command;
  }
  stage_.choose("FileStopTrack");
}

TEST_F(MainFormTracking, CanBeStartedAgain) {
  stage_.start();
  trackUntilStoppedInPass(1);
  visit("http://one.two.three");
  // The pumps are counted on: one was in the first pass, one when tracking stopped.
  trackUntilStoppedInPass(3);
  EXPECT_NE(stage_.form.tree().find("one.two.three"), kNoNode);
}

TEST_F(MainFormTracking, SaysThatItHasStoppedAlsoWhenItWasNotRunning) {
  stage_.start();
  stage_.choose("FileStopTrack");
  EXPECT_EQ(stage_.panelText(2), "Tracking websites stopped.");
}

struct Sentence {
  int number;
  const char* text;
};

constexpr Sentence kSentences[] = {
    {7, "Out of memory. Stopping tracking."},
    {28, "Out of memory. Stopping tracking."},
    {31001, "Out of memory. Stopping tracking."},
    {53, "Can't find specified file. Stopping tracking."},
    {57, "Device I/O error. Stopping tracking."},
    {61, "Disk full. Stopping tracking."},
    {68, "Device not ready. Stopping tracking."},
    {71, "Disk not ready. Stopping tracking."},
    {75, "Path/file access error. Stopping tracking."},
    {76, "Path not found. Stopping tracking."},
    {321, "Invalid file format. Stopping tracking."},
    {67, "Error. Stopping tracking."},
    {9, "Error. Stopping tracking."},
};

class MainFormTrackingFailure : public testing::TestWithParam<FileCall> {};

TEST_P(MainFormTrackingFailure, StopsWithItsSentence) {
  for (const auto& [number, text] : kSentences) {
    SCOPED_TRACE(number);
    MainFormStage stage;
    stage.start();
    stage.windows.show({browserWindow("Netscape", "http://one.two.three/a", "Connect:")});
    stage.files.failAtCall(GetParam(), 1, number);
    stage.messageBox.expect(text, MessageBoxStyle::Critical, MessageBoxButton::Ok, [&stage] {
      EXPECT_TRUE(stage.form.isTracking());
      EXPECT_EQ(stage.panelText(2), "Tracking websites.");
      EXPECT_EQ(stage.memory.openFiles(), 0);
    });
    stage.track();
    EXPECT_FALSE(stage.form.isTracking());
    EXPECT_EQ(stage.panelText(2), "Tracking websites stopped.");
    EXPECT_TRUE(stage.form.isVisible());
  }
}

INSTANTIATE_TEST_SUITE_P(AtEachFileOperation, MainFormTrackingFailure,
                         testing::Values(FileCall::OpenRandomAccess, FileCall::Length,
                                         FileCall::WriteAt, FileCall::Sync));

TEST_F(MainFormTracking, StopsWhenAKnownSiteCannotBeReadBack) {
  stage_.start(siteRecord("one.two.three", 'N'));
  stage_.files.spoilBytes(0, 322, failure::kDeviceIo);
  visit("http://one.two.three");
  stage_.messageBox.expect("Device I/O error. Stopping tracking.", MessageBoxStyle::Critical);
  stage_.track();
  EXPECT_EQ(stage_.panelText(2), "Tracking websites stopped.");
}

TEST_F(MainFormTracking, StopsWhenTheScanFails) {
  stage_.start();
  visit("http://one.two.three");
  stage_.windows.failAt(test::WindowCall::EnumWindows, 2, failure::kDeviceUnavailable);
  stage_.messageBox.expect("Device not ready. Stopping tracking.", MessageBoxStyle::Critical);
  stage_.track();
  EXPECT_EQ(stage_.windows.enumerations(), 2);
  EXPECT_EQ(stage_.panelText(2), "Tracking websites stopped.");
}

TEST_F(MainFormTracking, StopsAtAnAddressOfTooManyLevels) {
  stage_.start();
  std::string address = "http://one.two.three";
  for (int i = 0; i < 50; ++i) address += "/s";
  visit(address);
  stage_.messageBox.expect("Error. Stopping tracking.", MessageBoxStyle::Critical);
  stage_.track();
  EXPECT_EQ(stage_.form.tree().size(), 1U);
}

TEST_F(MainFormTracking, EndsBothLoopsWhenTheInnerOneFails) {
  stage_.start();
  stage_.events.atPump(1, [this] {
    visit("http://one.two.three");
    stage_.files.failAtCall(FileCall::OpenRandomAccess, 1, failure::kDiskFull);
    stage_.messageBox.expect("Disk full. Stopping tracking.", MessageBoxStyle::Critical);
    stage_.track();
    EXPECT_FALSE(stage_.form.isTracking());
  });
  stage_.track();
  EXPECT_TRUE(stage_.messageBox.isThrough());
  EXPECT_FALSE(stage_.form.isTracking());
  EXPECT_EQ(stage_.panelText(2), "Tracking websites stopped.");
  EXPECT_EQ(stage_.windows.enumerations(), 2);
}

TEST_F(MainFormTracking, EndsWithItsWindow) {
  stage_.start();
  visit("http://one.two.three");
  QSignalSpy unloaded(&stage_.form, &MainForm::unloaded);
  stage_.events.atPump(2, [this] { stage_.form.close(); });
  stage_.track();
  EXPECT_FALSE(stage_.form.isTracking());
  EXPECT_EQ(stage_.events.pumps(), 2);
  EXPECT_EQ(unloaded.count(), 1);
  EXPECT_FALSE(stage_.form.isVisible());
}

TEST_F(MainFormTracking, EndsWhenExitIsChosen) {
  stage_.start();
  QSignalSpy unloaded(&stage_.form, &MainForm::unloaded);
  stage_.events.atPump(2, [this] { stage_.choose("FileExit"); });
  stage_.track();
  EXPECT_FALSE(stage_.form.isTracking());
  EXPECT_EQ(unloaded.count(), 1);
}

TEST_F(MainFormTracking, EndsBothLoopsWithItsWindow) {
  stage_.start();
  stage_.events.atPump(1, [this] { stage_.choose("FileStartTrack"); });
  stage_.events.atPump(2, [this] { stage_.form.close(); });
  stage_.track();
  EXPECT_FALSE(stage_.form.isTracking());
  EXPECT_EQ(stage_.events.pumps(), 2);
}

TEST_F(MainFormTracking, MayLoseItsWindowWhileAFailureIsOnScreen) {
  stage_.start();
  visit("http://one.two.three");
  QSignalSpy unloaded(&stage_.form, &MainForm::unloaded);
  stage_.files.failAtCall(FileCall::OpenRandomAccess, 1, failure::kDiskFull);
  stage_.messageBox.expect("Disk full. Stopping tracking.", MessageBoxStyle::Critical,
                           MessageBoxButton::Ok, [this] { stage_.form.close(); });
  stage_.track();
  EXPECT_EQ(unloaded.count(), 1);
  EXPECT_FALSE(stage_.form.isTracking());
}

}  // namespace
}  // namespace quorrix
