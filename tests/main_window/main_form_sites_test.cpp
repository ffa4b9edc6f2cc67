// The commands that remove sites and that open one in the browser.
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <new>

#include "main_window/main_form.h"
#include "main_window/main_form_stage.h"
#include "records/record_file_stage.h"

namespace quorrix {
namespace {

using test::MainFormStage;
using test::siteRecord;

constexpr const char* kDeleteAnyway =
    "You are about to delete the selected site and all its sub sites. Deleting will remove the "
    "selected items from the current view and permanently destroy all information associated "
    "with them. Delete anyway?";

constexpr const char* kStopTrackingFirst =
    "You must stop tracking websites before using this feature.";

class MainFormSitesTest : public testing::Test {
 protected:
  MainFormSitesTest() {
    stage_.start(siteRecord("one.two.three/a/b", 'N') + siteRecord("four.five.six", 'S') +
                 siteRecord("one.two.three/c", 'N'));
    for (const auto* const key : {"one.two.three", "four.five.six", "one.two.three/a/b"}) {
      notes_ += test::notesRecord(key, "roses");
      info_ += test::userIDPasswordRecord(key, "p", "u");
      purchases_ += test::purchaseRecord(key) + test::purchaseRecord(key);
    }
    stage_.memory.givenAFile("/Quorrix/Data/notes.dat", notes_);
    stage_.memory.givenAFile("/Quorrix/Data/info.dat", info_);
    stage_.memory.givenAFile("/Quorrix/Data/purchases.dat", purchases_);
  }

  // Selects like a click, which also puts the site into the caption.
  void select(std::string_view key) {
    stage_.form.tree().select(stage_.node(key));
    stage_.form.TreeView_MouseUp(mouse_button::kLeft, 0, 0, 0);
  }

  // Searches for the text, and returns the list of results.
  QListView& resultsOf(const char* text) {
    stage_.choose("FileSearch");
    QWidget* const search = test::openWindow(QStringLiteral("SearchDialog"));
    search->findChild<QLineEdit*>(QStringLiteral("Text3"))->setText(QString::fromLatin1(text));
    search->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
    QWidget* const results = test::openWindow(QStringLiteral("SearchResultsDialog"));
    if (results == nullptr) throw std::logic_error("no results");
    return *results->findChild<QListView*>(QStringLiteral("List1"));
  }

  const std::string& file(const char* name) {
    return stage_.memory.bytesOf(Path("/Quorrix/Data") / name);
  }

  void expectNothingDeleted() {
    EXPECT_EQ(stage_.form.tree().size(), 6U);
    EXPECT_EQ(file("nodes.dat"), siteRecord("one.two.three/a/b", 'N') +
                                     siteRecord("four.five.six", 'S') +
                                     siteRecord("one.two.three/c", 'N'));
    EXPECT_EQ(file("notes.dat"), notes_);
    EXPECT_EQ(file("info.dat"), info_);
    EXPECT_EQ(file("purchases.dat"), purchases_);
  }

  void whenAskedAnswer(MessageBoxButton answer) {
    stage_.messageBox.expect(kDeleteAnyway, MessageBoxStyle::ConfirmWarning, answer);
  }

  MainFormStage stage_;
  std::string notes_;
  std::string info_;
  std::string purchases_;
};

using MainFormDelete = MainFormSitesTest;
using MainFormClear = MainFormSitesTest;
using MainFormLaunch = MainFormSitesTest;
using MainFormSearch = MainFormSitesTest;

TEST_F(MainFormDelete, DestroysAHostWithEverythingBelowItInAllFourFiles) {
  select("one.two.three");
  whenAskedAnswer(MessageBoxButton::Ok);
  stage_.choose("FileDelete");
  EXPECT_EQ(file("nodes.dat"),
            std::string(322, ' ') + siteRecord("four.five.six", 'S') + std::string(322, ' '));
  EXPECT_EQ(file("notes.dat"), std::string(1324, ' ') +
                                   test::notesRecord("four.five.six", "roses") +
                                   std::string(1324, ' '));
  EXPECT_EQ(file("info.dat"), std::string(360, ' ') +
                                  test::userIDPasswordRecord("four.five.six", "p", "u") +
                                  std::string(360, ' '));
  // The second purchase of a site stays.
  EXPECT_EQ(file("purchases.dat"),
            std::string(542, ' ') + test::purchaseRecord("one.two.three") +
                test::purchaseRecord("four.five.six") + test::purchaseRecord("four.five.six") +
                std::string(542, ' ') + test::purchaseRecord("one.two.three/a/b"));
  EXPECT_EQ(stage_.form.tree().size(), 2U);
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
}

TEST_F(MainFormDelete, TakesTheCaptionFromWhatIsSelectedThen) {
  for (const auto* const host : {"one.two.three", "four.five.six"}) {
    select(host);
    whenAskedAnswer(MessageBoxButton::Ok);
    stage_.choose("FileDelete");
  }
  EXPECT_EQ(stage_.form.tree().size(), 1U);
  EXPECT_EQ(stage_.caption(), "Quorrix");
}

TEST_F(MainFormDelete, EmptiesEverythingWhenTheRootIsSelected) {
  select("one.two.three");
  stage_.form.tree().select(stage_.node("ROOT"));
  whenAskedAnswer(MessageBoxButton::Ok);
  stage_.choose("FileDelete");
  for (const auto* const name : {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"}) {
    EXPECT_EQ(file(name), "") << name;
  }
  SiteTree& tree = stage_.form.tree();
  EXPECT_EQ(tree.size(), 1U);
  EXPECT_EQ(tree.text(tree.root()), "www");
  EXPECT_EQ(tree.selected(), tree.root());
  EXPECT_EQ(stage_.caption(), "Quorrix");
}

TEST_F(MainFormDelete, TakesASiteNamedLikeTheRootForASite) {
  stage_.form.tree().addMissingLevels(addressLevels("four.five.six/www"), 'N');
  select("four.five.six/www");
  whenAskedAnswer(MessageBoxButton::Ok);
  stage_.choose("FileDelete");
  expectNothingDeleted();
}

TEST_F(MainFormDelete, ChangesNothingWithoutConfirmation) {
  select("one.two.three");
  whenAskedAnswer(MessageBoxButton::Cancel);
  stage_.choose("FileDelete");
  expectNothingDeleted();
}

TEST_F(MainFormDelete, IsRefusedWhenNothingIsThere) {
  stage_.form.tree().clear();
  stage_.messageBox.expect("No website addresses to delete in current display.",
                           MessageBoxStyle::Information);
  stage_.choose("FileDelete");
}

TEST_F(MainFormDelete, WorksUnderTheHourglass) {
  select("four.five.six");
  whenAskedAnswer(MessageBoxButton::Ok);
  bool hadHourglass = true;
  stage_.files.onEveryCall(
      [&] { hadHourglass = hadHourglass && stage_.pointer() == Qt::WaitCursor; });
  stage_.choose("FileDelete");
  EXPECT_GT(stage_.files.calls().size(), 4U);
  EXPECT_TRUE(hadHourglass);
  stage_.files.onEveryCall({});
}

struct DeleteFailure {
  int number;
  const char* sentence;
};

constexpr DeleteFailure kDeleteFailures[] = {
    {7, "Not enough memory available to delete site(s)."},
    {53, "Unable to find file. Stopping delete."},
    {57, "Device I/O error. Stopping delete."},
    {67, "Too many file open. Stopping delete."},
    {68, "Device not ready. Ending program."},
    {71, "Disk not ready. Stopping delete."},
    {76, "Error. Stopping delete."},
};

TEST_F(MainFormDelete, KeepsTheNodesOnScreenAfterAFailureAndGoesOnRunning) {
  for (const auto& [number, sentence] : kDeleteFailures) {
    for (const auto* const key : {"one.two.three", "ROOT"}) {
      select(key);
      whenAskedAnswer(MessageBoxButton::Ok);
      stage_.messageBox.expect(sentence, MessageBoxStyle::Critical);
      stage_.files.reset();
      stage_.files.failAtCall(1, number);
      stage_.choose("FileDelete");
      expectNothingDeleted();
      EXPECT_TRUE(stage_.form.isVisible());
      EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
    }
  }
}

TEST_F(MainFormDelete, LeavesBlankWhatWasBlankedBeforeAFailure) {
  select("four.five.six");
  whenAskedAnswer(MessageBoxButton::Ok);
  stage_.messageBox.expect("Device I/O error. Stopping delete.", MessageBoxStyle::Critical);
  stage_.files.failAtCall(test::FileCall::OpenAsPermitted, 2, 57);
  stage_.choose("FileDelete");
  EXPECT_EQ(file("nodes.dat").substr(322, 322), std::string(322, ' '));
  EXPECT_EQ(file("purchases.dat"), purchases_);
  EXPECT_EQ(stage_.form.tree().size(), 6U);
}

TEST_F(MainFormClear, EmptiesTheDisplayAndTouchesNoFile) {
  select("one.two.three");
  stage_.choose("FileClear");
  SiteTree& tree = stage_.form.tree();
  EXPECT_EQ(tree.size(), 1U);
  EXPECT_EQ(tree.selected(), tree.root());
  EXPECT_EQ(stage_.caption(), "Quorrix");
  EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
  EXPECT_EQ(stage_.files.calls().size(), 0U);
}

// No failure escapes from a command of the menu, whatever causes it.
TEST_F(MainFormClear, TellsOfAFailure) {
  stage_.form.tree().clear();
  stage_.messageBox.expect("No website addresses to clear in current display.",
                           MessageBoxStyle::Information, MessageBoxButton::Ok,
                           [] { throw std::bad_alloc(); });
  stage_.messageBox.expect("Out of memory.", MessageBoxStyle::Critical);
  EXPECT_NO_THROW(stage_.choose("FileClear"));
}

TEST_F(MainFormClear, IsRefusedWhenNothingIsThere) {
  stage_.form.tree().clear();
  stage_.messageBox.expect("No website addresses to clear in current display.",
                           MessageBoxStyle::Information);
  stage_.choose("FileClear");
}

TEST_F(MainFormSitesTest, RemovesNothingWhileTracking) {
  for (const char* const command : {"FileSearch", "FileDelete", "FileClear"}) {
    stage_.messageBox.expect(kStopTrackingFirst, MessageBoxStyle::Information);
    QTimer::singleShot(0, &stage_.form, [this, command] {
      stage_.choose(command);
      stage_.choose("FileStopTrack");
    });
    stage_.track();
  }
  EXPECT_TRUE(stage_.messageBox.isThrough());
  EXPECT_EQ(test::openWindow(QStringLiteral("SearchDialog")), nullptr);
  expectNothingDeleted();
}

// A question about "the selected site" refers to the site in the caption.
TEST_F(MainFormDelete, DestroysTheSiteThatTheCaptionNamesAfterTheKeyboardSelectedIt) {
  select("four.five.six");
  QTest::keyClick(&stage_.treeView(), Qt::Key_Home);
  EXPECT_EQ(stage_.caption(), "Quorrix");
  QTest::keyClick(&stage_.treeView(), Qt::Key_Down);
  EXPECT_EQ(stage_.caption(), "Quorrix - one.two.three");
  QTest::keyClicks(&stage_.treeView(), QStringLiteral("four"));
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  QTest::keyClick(&stage_.treeView(), Qt::Key_Up);
  whenAskedAnswer(MessageBoxButton::Ok);
  stage_.choose("FileDelete");
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  EXPECT_EQ(stage_.form.tree().size(), 2U);
}

TEST_F(MainFormDelete, ShowsTheSiteThatIsSelectedNext) {
  SiteTree& tree = stage_.form.tree();
  for (int page = 0; page < 100; ++page) {
    for (const char* const host : {"a.two.three/", "b.two.three/"}) {
      tree.addMissingLevels(addressLevels(host + std::to_string(page)), 'N');
    }
  }
  stage_.treeView().expandAll(tree.root(), false);
  stage_.treeView().makeVisible(stage_.node("a.two.three"), SiteTreeView::PositionAtCenter);
  select("a.two.three");
  whenAskedAnswer(MessageBoxButton::Ok);
  stage_.choose("FileDelete");
  EXPECT_EQ(stage_.caption(), "Quorrix - b.two.three");
  QCoreApplication::processEvents();
  EXPECT_TRUE(stage_.isOnScreen("b.two.three"));
}

TEST_F(MainFormDelete, NamesTheSiteThatTrackingSelectedBeforeItAsks) {
  select("four.five.six");
  stage_.form.tree().select(stage_.node("one.two.three/c"));  // as a visit does
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  stage_.messageBox.expect(kDeleteAnyway, MessageBoxStyle::ConfirmWarning, MessageBoxButton::Cancel,
                           [this] { EXPECT_EQ(stage_.caption(), "Quorrix - one.two.three/c"); });
  stage_.choose("FileDelete");
  EXPECT_TRUE(stage_.messageBox.isThrough());
}

class MainFormToolTipTest : public MainFormSitesTest {
 protected:
  // The tool tip in the tree.
  std::string toolTipOf(std::string_view key) {
    return stage_.indexOf(key).data(Qt::ToolTipRole).toString().toStdString();
  }
};

using MainFormToolTip = MainFormToolTipTest;

TEST_F(MainFormToolTip, TellsAddressSchemeAndLatestVisit) {
  EXPECT_EQ(toolTipOf("four.five.six"),
            "<p style='white-space:pre'>https://four.five.six\n"
            "Latest visit: 7/1/26 8:00:00 AM</p>");
}

TEST_F(MainFormToolTip, TellsNoVisitOfAFolderThatWasNeverVisited) {
  EXPECT_EQ(toolTipOf("one.two.three/a"), "<p style='white-space:pre'>http://one.two.three/a</p>");
  EXPECT_EQ(toolTipOf("ROOT"), "");
}

TEST_F(MainFormToolTip, TellsTheAddressAloneWhenTheFileCannotBeRead) {
  stage_.files.failAlways(57);
  EXPECT_EQ(toolTipOf("four.five.six"), "<p style='white-space:pre'>https://four.five.six</p>");
}

// A site that was cleared from the display and visited again has two records.
TEST_F(MainFormToolTip, TellsTheLatestOfTwoRecords) {
  stage_.memory.givenAFile("/Quorrix/Data/nodes.dat",
                           siteRecord("four.five.six", 'S', "7/1/26 8:00:00 AM~") +
                               siteRecord("four.five.six", 'S', "7/2/26 7:00:00 AM~"));
  EXPECT_EQ(toolTipOf("four.five.six"),
            "<p style='white-space:pre'>https://four.five.six\n"
            "Latest visit: 7/2/26 7:00:00 AM</p>");
}

class MainFormKeysTest : public MainFormSitesTest {
 protected:
  MainFormKeysTest() {
    stage_.form.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage_.form));
  }

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&stage_.treeView(), key, modifiers);
  }
};

using MainFormKeys = MainFormKeysTest;

TEST_F(MainFormKeys, DeleteAsksBeforeItDeletesTheSelectedSite) {
  select("four.five.six");
  whenAskedAnswer(MessageBoxButton::Cancel);
  press(Qt::Key_Delete);
  EXPECT_TRUE(stage_.messageBox.isThrough());
  expectNothingDeleted();
}

TEST_F(MainFormKeys, CtrlFOpensTheSearch) {
  press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_NE(test::openWindow(QStringLiteral("SearchDialog")), nullptr);
}

TEST_F(MainFormKeys, CtrlQEndsTheProgram) {
  press(Qt::Key_Q, Qt::ControlModifier);
  EXPECT_FALSE(stage_.form.isVisible());
}

TEST_F(MainFormKeys, F1OpensTheHelp) {
  stage_.memory.givenAFile("/Quorrix/Quorrix.hlp", "<h1>Quorrix</h1>");
  press(Qt::Key_F1);
  EXPECT_NE(test::openWindow(QStringLiteral("HelpWindow")), nullptr);
}

TEST_F(MainFormKeys, EnterOpensTheSelectedSiteInTheBrowser) {
  select("four.five.six");
  press(Qt::Key_Return);
  EXPECT_EQ(stage_.commandShell.lines, std::vector<std::string>{"start https://four.five.six"});
}

TEST_F(MainFormKeys, EnterOnTheRootDoesNothing) {
  stage_.form.tree().select(stage_.node("ROOT"));
  press(Qt::Key_Return);
  EXPECT_EQ(stage_.commandShell.lines, std::vector<std::string>{});
}

TEST_F(MainFormSearch, IsRefusedWhenNothingIsThere) {
  stage_.form.tree().clear();
  stage_.messageBox.expect("No website addresses to search in current display.",
                           MessageBoxStyle::Information);
  stage_.choose("FileSearch");
  EXPECT_EQ(test::openWindow(QStringLiteral("SearchDialog")), nullptr);
}

TEST_F(MainFormSearch, FindsInTheSiteFileAndLocatesInTheTree) {
  QListView& list = resultsOf("THREE/A");
  ASSERT_EQ(list.model()->rowCount(), 1);
  list.setCurrentIndex(list.model()->index(0, 0));
  list.window()->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
  EXPECT_EQ(stage_.form.tree().selected(), stage_.node("one.two.three/a/b"));
  EXPECT_TRUE(stage_.isOnScreen("one.two.three/a/b"));
  EXPECT_EQ(stage_.caption(), "Quorrix - one.two.three/a/b");
}

TEST_F(MainFormSearch, TellsAndCopiesTheAddressesOfTheResultsWithTheirScheme) {
  QListView& list = resultsOf("e");
  ASSERT_EQ(list.model()->rowCount(), 3);
  stage_.form.FileClear_Click();  // one.two.three/a/b is no longer in the tree
  stage_.form.tree().addMissingLevels(addressLevels("four.five.six"), 'N');
  list.setCurrentIndex(list.model()->index(1, 0));
  EXPECT_EQ(list.currentIndex().data(Qt::ToolTipRole).toString(),
            QStringLiteral("<p style='white-space:pre'>http://four.five.six\n"
                           "Latest visit: 7/1/26 8:00:00 AM</p>"));
  QTest::keySequence(&list, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("http://four.five.six"));
  list.setCurrentIndex(list.model()->index(0, 0));
  QTest::keySequence(&list, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("http://one.two.three/a/b"));
  list.clearSelection();
  QApplication::clipboard()->setText(QStringLiteral("tulip"));
  QTest::keySequence(&list, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("tulip"));
}

TEST_F(MainFormSearch, ShowsALocatedSiteInTheMiddleOfTheTree) {
  for (int i = 0; i < 300; ++i) {
    stage_.form.tree().addMissingLevels(addressLevels("host" + std::to_string(i) + ".two.three"),
                                        'N');
  }
  stage_.memory.givenAFile("/Quorrix/Data/nodes.dat", siteRecord("host200.two.three", 'N'));
  QListView& list = resultsOf("host200");
  ASSERT_EQ(list.model()->rowCount(), 1);
  list.setCurrentIndex(list.model()->index(0, 0));
  list.window()->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
  const QWidget& viewport = *stage_.treeView().viewport();
  const QRect row = stage_.treeView().visualRect(stage_.indexOf("host200.two.three"));
  EXPECT_LE(std::abs(row.center().y() - viewport.rect().center().y()), 2 * row.height());
}

TEST_F(MainFormSearch, LeavesResultsThatOutliveTheirSites) {
  QListView& list = resultsOf("four");
  select("four.five.six");
  whenAskedAnswer(MessageBoxButton::Ok);
  stage_.choose("FileDelete");
  list.setCurrentIndex(list.model()->index(0, 0));
  stage_.messageBox.expect("Unable to find site in display.", MessageBoxStyle::Critical);
  list.window()->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
  EXPECT_TRUE(list.window()->isVisible());
}

TEST_F(MainFormSearch, FindsNothingByAnEmptyAddress) {
  stage_.choose("FileSearch");
  stage_.messageBox.expect("No matches found.", MessageBoxStyle::Information);
  test::openWindow(QStringLiteral("SearchDialog"))
      ->findChild<QPushButton*>(QStringLiteral("OKButton"))
      ->click();
  EXPECT_NE(test::openWindow(QStringLiteral("SearchDialog")), nullptr);
}

TEST_F(MainFormSearch, ClosesItsWindowsWithTheProgram) {
  stage_.choose("FileSearch");
  stage_.choose("FileExit");
  EXPECT_EQ(test::openWindow(QStringLiteral("SearchDialog")), nullptr);
}

TEST_F(MainFormLaunch, OpensTheSelectedSiteByTheSchemeOfItsLastVisit) {
  select("four.five.six");
  stage_.form.PopUpLaunch_Click();
  select("one.two.three/a");
  stage_.form.PopUpLaunch_Click();
  EXPECT_EQ(stage_.commandShell.lines, (std::vector<std::string>{"start https://four.five.six",
                                                                 "start http://one.two.three/a"}));
}

TEST_F(MainFormLaunch, TellsOfAFailure) {
  select("four.five.six");
  for (const auto& [number, sentence] :
       {std::pair{7, "Not enough memory available to link site in browser."},
        std::pair{28, "Not enough memory available to link site in browser."},
        std::pair{31001, "Not enough memory available to link site in browser."},
        std::pair{53, "Error. Unable to link site in browser."}}) {
    stage_.commandShell.failure = number;
    stage_.form.setCursor(Qt::WaitCursor);
    stage_.messageBox.expect(sentence, MessageBoxStyle::Critical, MessageBoxButton::Ok,
                             [this] { EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor); });
    stage_.form.PopUpLaunch_Click();
    EXPECT_TRUE(stage_.messageBox.isThrough());
    EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
  }
}

}  // namespace
}  // namespace quorrix
