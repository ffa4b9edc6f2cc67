#include "sitetree/site_tree_view.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <cstdlib>
#include <string>

#include "support/code_pages.h"
#include "support/qt_printers.h"

namespace quorrix {
namespace {

class SiteTreeViewTest : public testing::Test {
 protected:
  void SetUp() override {
    tree_.addRoot();
    view_.resize(400, 300);
    view_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view_));
  }

  void add(std::string_view address) { tree_.addMissingLevels(addressLevels(address), 'N'); }

  void givenTwoHostsWithSubSites() {
    for (const auto* const address :
         {"one.two.three/a/b/c", "one.two.three/d", "four.five.six/x/y"}) {
      add(address);
    }
    view_.expandDNSNodes();
  }

  NodeId node(std::string_view key) const { return tree_.at(key); }

  QModelIndex indexOf(std::string_view key) const {
    return static_cast<const SiteTreeModel*>(view_.model())->indexOf(node(key));
  }

  bool isExpanded(std::string_view key) const { return view_.isExpanded(indexOf(key)); }

  // Whether the node's row is in the visible part of the view.
  bool isOnScreen(std::string_view key) const {
    const QRect row = view_.visualRect(indexOf(key));
    return row.isValid() && view_.viewport()->rect().contains(row.center());
  }

  // The keys of the highlighted rows.
  QStringList highlighted() const {
    QStringList keys;
    for (const QModelIndex& index : view_.selectionModel()->selectedIndexes()) {
      const NodeId node = qobject_cast<const SiteTreeModel*>(view_.model())->nodeOf(index);
      keys << QString::fromLatin1(tree_.key(node).data(),
                                  static_cast<qsizetype>(tree_.key(node).size()));
    }
    return keys;
  }

  void click(Qt::MouseButton button, const QPoint& at, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(view_.viewport(), button, modifiers, at);
  }

  QPoint placeOf(std::string_view key) { return view_.visualRect(indexOf(key)).center(); }

  QPoint emptyPlace() {
    const QPoint place(200, 290);
    EXPECT_FALSE(view_.indexAt(place).isValid());
    return place;
  }

  SiteTree tree_;
  SiteTreeView view_{tree_, test::westernCodePage()};
};

using SiteTreeViewExpandDNSNodes = SiteTreeViewTest;

TEST_F(SiteTreeViewExpandDNSNodes, ShowsTheHostsAndNothingBelowThem) {
  givenTwoHostsWithSubSites();
  EXPECT_TRUE(isExpanded("ROOT"));
  EXPECT_TRUE(isOnScreen("one.two.three"));
  EXPECT_TRUE(isOnScreen("four.five.six"));
  EXPECT_FALSE(isExpanded("one.two.three"));
  EXPECT_FALSE(isExpanded("four.five.six"));
}

using SiteTreeViewExpandAll = SiteTreeViewTest;

TEST_F(SiteTreeViewExpandAll, OpensEverythingBelowTheNode) {
  givenTwoHostsWithSubSites();
  view_.expandAll(node("one.two.three"), false);
  EXPECT_TRUE(isExpanded("one.two.three"));
  EXPECT_TRUE(isExpanded("one.two.three/a"));
  EXPECT_TRUE(isExpanded("one.two.three/a/b"));
  EXPECT_TRUE(isOnScreen("one.two.three/a/b/c"));
  EXPECT_FALSE(isExpanded("four.five.six"));
}

TEST_F(SiteTreeViewExpandAll, OpensTheNodeAloneAfterASearchThatFoundItsAddress) {
  givenTwoHostsWithSubSites();
  view_.expandAll(node("one.two.three"), true);
  EXPECT_TRUE(isExpanded("one.two.three"));
  EXPECT_FALSE(isExpanded("one.two.three/a"));
  EXPECT_FALSE(isExpanded("one.two.three/a/b"));
}

TEST_F(SiteTreeViewExpandAll, LeavesANodeWithoutChildrenAsItIs) {
  givenTwoHostsWithSubSites();
  view_.expandAll(node("one.two.three/d"), false);
  EXPECT_FALSE(isExpanded("one.two.three/d"));
  EXPECT_FALSE(isExpanded("one.two.three"));
}

using SiteTreeViewCollapseNode = SiteTreeViewTest;

TEST_F(SiteTreeViewCollapseNode, KeepsSubSitesOpenForTheNextTime) {
  givenTwoHostsWithSubSites();
  view_.expandAll(node("one.two.three"), false);
  view_.collapseNode(node("one.two.three"));
  EXPECT_FALSE(isExpanded("one.two.three"));
  EXPECT_FALSE(isOnScreen("one.two.three/a"));
  QTest::keyClick(&view_, Qt::Key_Home);
  QTest::keyClick(&view_, Qt::Key_Down);
  QTest::keyClick(&view_, Qt::Key_Right);
  EXPECT_TRUE(isExpanded("one.two.three"));
  EXPECT_TRUE(isExpanded("one.two.three/a"));
  EXPECT_TRUE(isOnScreen("one.two.three/a/b/c"));
}

TEST_F(SiteTreeViewCollapseNode, LeavesOtherHostsOpen) {
  givenTwoHostsWithSubSites();
  view_.expandAll(node("ROOT"), false);
  view_.collapseNode(node("one.two.three"));
  EXPECT_TRUE(isExpanded("four.five.six"));
  EXPECT_TRUE(isExpanded("ROOT"));
}

using SiteTreeViewMakeVisible = SiteTreeViewTest;

TEST_F(SiteTreeViewMakeVisible, OpensTheAncestorsAndNotTheNode) {
  for (const auto* const address : {"one.two.three/a/b/c", "four.five.six/x"}) add(address);
  view_.makeVisible(node("one.two.three/a/b"));
  EXPECT_TRUE(isExpanded("ROOT"));
  EXPECT_TRUE(isExpanded("one.two.three"));
  EXPECT_TRUE(isExpanded("one.two.three/a"));
  EXPECT_FALSE(isExpanded("one.two.three/a/b"));
  EXPECT_FALSE(isExpanded("four.five.six"));
  EXPECT_TRUE(isOnScreen("one.two.three/a/b"));
}

TEST_F(SiteTreeViewMakeVisible, OpensAnAncestorThatHadLostItsLastChild) {
  givenTwoHostsWithSubSites();
  view_.makeVisible(node("four.five.six/x"));
  tree_.remove(node("four.five.six/x"));
  QApplication::processEvents();
  add("four.five.six/z");
  view_.makeVisible(node("four.five.six/z"));
  EXPECT_TRUE(isOnScreen("four.five.six/z"));
}

TEST_F(SiteTreeViewMakeVisible, ScrollsToTheNode) {
  for (int i = 0; i < 100; ++i) add("host" + std::to_string(i) + ".two.three/page");
  view_.expandDNSNodes();
  ASSERT_FALSE(isOnScreen("host99.two.three"));
  view_.makeVisible(node("host99.two.three/page"));
  EXPECT_TRUE(isOnScreen("host99.two.three/page"));
  view_.makeVisible(node("ROOT"));
  EXPECT_TRUE(isOnScreen("ROOT"));
}

TEST_F(SiteTreeViewMakeVisible, PutsTheNodeIntoTheMiddleWhenItIsAskedTo) {
  for (int i = 0; i < 100; ++i) add("host" + std::to_string(i) + ".two.three/page");
  view_.expandDNSNodes();
  view_.makeVisible(node("host50.two.three/page"), SiteTreeView::PositionAtCenter);
  const QRect row = view_.visualRect(indexOf("host50.two.three/page"));
  EXPECT_LE(std::abs(row.center().y() - view_.viewport()->rect().center().y()), row.height());
}

using SiteTreeViewTypeAhead = SiteTreeViewTest;

TEST_F(SiteTreeViewTypeAhead, SelectsTheNextNodeThatBeginsWithTheTextAndPutsItIntoTheMiddle) {
  for (int i = 10; i < 100; ++i) add("host" + std::to_string(i) + ".two.three");
  view_.expandDNSNodes();
  QTest::keyClicks(&view_, QStringLiteral("HOST55"));
  EXPECT_EQ(tree_.selected(), node("host55.two.three"));
  const QRect row = view_.visualRect(indexOf("host55.two.three"));
  EXPECT_LE(std::abs(row.center().y() - view_.viewport()->rect().center().y()), row.height());
}

TEST_F(SiteTreeViewTypeAhead, GoesFromMatchToMatchByOneLetterAndAroundTheEnd) {
  for (const auto* const address : {"far.two.three", "one.two.three", "Fun.two.three"})
    add(address);
  view_.expandDNSNodes();
  for (const auto* const key : {"far.two.three", "Fun.two.three", "far.two.three"}) {
    QTest::keyClicks(&view_, QStringLiteral("f"));
    EXPECT_EQ(tree_.selected(), node(key));
  }
}

TEST_F(SiteTreeViewTypeAhead, StaysOnTheRowThatMatchesTheNextLetterToo) {
  for (const auto* const address : {"one.two.three", "ona.two.three", "onb.two.three"})
    add(address);
  view_.expandDNSNodes();
  QTest::keyClicks(&view_, QStringLiteral("on"));
  EXPECT_EQ(tree_.selected(), node("one.two.three"));
  QTest::keyClicks(&view_, QStringLiteral("b"));
  EXPECT_EQ(tree_.selected(), node("onb.two.three"));
}

TEST_F(SiteTreeViewTypeAhead, FindsNoRowThatIsClosed) {
  givenTwoHostsWithSubSites();
  QTest::keyClicks(&view_, QStringLiteral("d"));
  EXPECT_EQ(tree_.selected(), tree_.root());
  tree_.select(node("one.two.three/a/b"));
  QTest::keyClicks(&view_, QStringLiteral("c"));
  EXPECT_EQ(tree_.selected(), node("one.two.three/a/b"));
}

TEST_F(SiteTreeViewTypeAhead, PassesOverABranchThatIsClosed) {
  add("one.two.three/zebra");
  add("four.five.six");
  add("zoo.two.three");
  view_.expandDNSNodes();
  QTest::keyClicks(&view_, QStringLiteral("z"));
  EXPECT_EQ(tree_.selected(), node("zoo.two.three"));
}

// Every row is as wide as the widest one, and its text is at its beginning.
TEST_F(SiteTreeViewTypeAhead, ShowsTheBeginningOfTheRowWhenAnotherIsWide) {
  add("one.two.three/" + std::string(250, 'm'));
  add("four.five.six");
  view_.resize(200, 200);
  view_.show();
  view_.expandAll(tree_.root(), false);
  QCoreApplication::processEvents();
  QTest::keyClicks(&view_, QStringLiteral("four"));
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
  EXPECT_GT(view_.horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(view_.horizontalScrollBar()->value(), 0);
}

TEST_F(SiteTreeViewTypeAhead, FindsNothingByACharacterThatNoAddressHas) {
  add("?.two.three");
  view_.expandDNSNodes();
  view_.keyboardSearch(QStringLiteral("\u0436"));
  EXPECT_EQ(tree_.selected(), tree_.root());
  QTest::keyClicks(&view_, QStringLiteral("?"));
  EXPECT_EQ(tree_.selected(), node("?.two.three"));
}

TEST_F(SiteTreeViewTypeAhead, BeginsANewTextAfterAPause) {
  for (const auto* const address : {"far.two.three", "one.two.three"}) add(address);
  view_.expandDNSNodes();
  QTest::keyClicks(&view_, QStringLiteral("f"));
  EXPECT_EQ(tree_.selected(), node("far.two.three"));
  QElapsedTimer sinceKey;
  sinceKey.start();
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return sinceKey.hasExpired(QApplication::keyboardInputInterval()); }));
  QTest::keyClicks(&view_, QStringLiteral("o"));
  EXPECT_EQ(tree_.selected(), node("one.two.three"));
}

// As in Qt's own views: only the first key of a text leaves the selected row in any case.
TEST_F(SiteTreeViewTypeAhead, StaysOnARowThatMatchesAfterACharacterThatNoAddressHas) {
  for (const auto* const address : {"far.two.three", "fun.two.three"}) add(address);
  view_.expandDNSNodes();
  tree_.select(node("far.two.three"));
  view_.keyboardSearch(QStringLiteral("\u0436"));
  view_.keyboardSearch(QStringLiteral("f"));
  EXPECT_EQ(tree_.selected(), node("far.two.three"));
}

TEST(SiteTreeViewWithoutARoot, TakesAKey) {
  SiteTree tree;
  SiteTreeView view(tree, test::westernCodePage());
  QTest::keyClicks(&view, QStringLiteral("a"));
  EXPECT_FALSE(view.currentIndex().isValid());
}

TEST_F(SiteTreeViewTypeAhead, StaysWhereItIsWhenNothingMatches) {
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  QTest::keyClicks(&view_, QStringLiteral("z"));
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
}

class SiteTreeViewNodeChosenTest : public SiteTreeViewTest {
 protected:
  QSignalSpy chosen_{&view_, &SiteTreeView::nodeChosen};
};

using SiteTreeViewNodeChosen = SiteTreeViewNodeChosenTest;

TEST_F(SiteTreeViewNodeChosen, ComesOnceForEachNodeThatTheUserSelects) {
  givenTwoHostsWithSubSites();
  click(Qt::LeftButton, placeOf("four.five.six"));
  EXPECT_EQ(chosen_.count(), 1);
  QTest::keyClick(&view_, Qt::Key_Home);
  EXPECT_EQ(chosen_.count(), 2);
  QTest::keyClicks(&view_, QStringLiteral("one"));
  EXPECT_EQ(chosen_.count(), 3);
}

TEST_F(SiteTreeViewNodeChosen, ComesWhenTheTreeSelectsTheNodeAlready) {
  givenTwoHostsWithSubSites();
  NodeId selected = kNoNode;
  QObject::connect(&view_, &SiteTreeView::nodeChosen, &view_,
                   [this, &selected] { selected = tree_.selected(); });
  QTest::keyClick(&view_, Qt::Key_Down);
  EXPECT_EQ(selected, node("one.two.three"));
}

TEST_F(SiteTreeViewNodeChosen, IsNotSentForWhatTheProgramSelects) {
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  tree_.select(node("one.two.three/a/b"));
  add("new.host.example");
  tree_.clear();
  EXPECT_EQ(chosen_.count(), 0);
}

TEST_F(SiteTreeViewNodeChosen, IsNotSentForTheSameNodeAgain) {
  givenTwoHostsWithSubSites();
  click(Qt::LeftButton, placeOf("four.five.six"));
  click(Qt::LeftButton, placeOf("four.five.six"));
  EXPECT_EQ(chosen_.count(), 1);
}

using SiteTreeViewKeys = SiteTreeViewTest;

TEST_F(SiteTreeViewKeys, CopyTheWholeAddressWithItsScheme) {
  givenTwoHostsWithSubSites();
  tree_.addMissingLevels(addressLevels("secure.host.example/caf\xE9"), 'S');
  tree_.select(node("one.two.three/a/b"));
  QTest::keyClick(&view_, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("http://one.two.three/a/b"));
  tree_.select(node("secure.host.example/caf\xE9"));
  QTest::keyClick(&view_, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(),
            QStringLiteral("https://secure.host.example/caf\u00e9"));
}

TEST_F(SiteTreeViewKeys, CopyNothingFromTheRoot) {
  QApplication::clipboard()->setText(QStringLiteral("before"));
  QTest::keyClick(&view_, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("before"));
}

TEST_F(SiteTreeViewKeys, TellOfEnterOnceForEachPress) {
  const QSignalSpy enters(&view_, &SiteTreeView::enterPressed);
  QTest::keyClick(&view_, Qt::Key_Return);
  QTest::keyClick(&view_, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(enters.count(), 2);
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
  QApplication::sendEvent(&view_, &repeated);
  EXPECT_EQ(enters.count(), 2);
}

using SiteTreeViewFollows = SiteTreeViewTest;

TEST_F(SiteTreeViewFollows, AFirstSubSiteOfAPageThatHadNone) {
  add("one.two.three/a");
  view_.makeVisible(node("one.two.three/a"));
  add("one.two.three/a/b");
  EXPECT_FALSE(isExpanded("one.two.three/a"));
  view_.expandAll(node("one.two.three/a"), false);
  EXPECT_TRUE(isExpanded("one.two.three/a"));
  EXPECT_TRUE(isOnScreen("one.two.three/a/b"));
}

TEST_F(SiteTreeViewFollows, AFirstSubSiteThatTheUserOpensByKeyboard) {
  add("one.two.three");
  view_.expandDNSNodes();
  tree_.select(node("one.two.three"));
  QTest::keyClick(&view_, Qt::Key_Right);
  ASSERT_EQ(tree_.selected(), node("one.two.three"));
  add("one.two.three/a");
  QTest::keyClick(&view_, Qt::Key_Right);
  EXPECT_TRUE(isExpanded("one.two.three"));
  EXPECT_TRUE(isOnScreen("one.two.three/a"));
}

TEST_F(SiteTreeViewFollows, AHostAddedBelowTheOpenRoot) {
  givenTwoHostsWithSubSites();
  ASSERT_TRUE(isOnScreen("four.five.six"));
  add("new.host.example");
  EXPECT_TRUE(isOnScreen("new.host.example"));
  EXPECT_EQ(view_.indexBelow(indexOf("four.five.six")), indexOf("new.host.example"));
}

TEST_F(SiteTreeViewFollows, TheTreesSelection) {
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  EXPECT_EQ(view_.currentIndex(), indexOf("four.five.six"));
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("four.five.six")}));
}

// Assistive technology changes the selection but not the current row.
TEST_F(SiteTreeViewFollows, ASelectionWithoutACurrentRow) {
  givenTwoHostsWithSubSites();
  QSignalSpy chosen(&view_, &SiteTreeView::nodeChosen);
  view_.selectionModel()->select(indexOf("four.five.six"), QItemSelectionModel::ClearAndSelect);
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
  EXPECT_EQ(view_.currentIndex(), indexOf("four.five.six"));
  EXPECT_EQ(chosen.size(), 1);
}

TEST_F(SiteTreeViewFollows, NothingWhenTheSelectionIsTakenAway) {
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  view_.selectionModel()->select(indexOf("four.five.six"), QItemSelectionModel::Deselect);
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("four.five.six")}));
}

TEST_F(SiteTreeViewFollows, TheTreesSelectionIntoAClosedHost) {
  givenTwoHostsWithSubSites();
  tree_.select(node("one.two.three/a/b"));
  EXPECT_EQ(view_.currentIndex(), indexOf("one.two.three/a/b"));
}

TEST_F(SiteTreeViewFollows, TheSelectionThatWasThereBeforeIt) {
  SiteTree tree;
  tree.addRoot();
  tree.addMissingLevels(addressLevels("one.two.three"), 'N');
  tree.select(tree.at("one.two.three"));
  const SiteTreeView view(tree, test::westernCodePage());
  EXPECT_EQ(view.currentIndex().data().toString(), QStringLiteral("one.two.three"));
  EXPECT_EQ(tree.selected(), tree.at("one.two.three"));
}

TEST_F(SiteTreeViewFollows, TheSelectionThroughABulkChange) {
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  {
    const SiteTree::BulkChange change(tree_);
    add("new.host.example/a");
  }
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
  EXPECT_EQ(view_.currentIndex(), indexOf("four.five.six"));
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("four.five.six")}));
}

using SiteTreeViewSelects = SiteTreeViewTest;

TEST_F(SiteTreeViewSelects, TheRootAtFirst) {
  EXPECT_EQ(view_.currentIndex(), indexOf("ROOT"));
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("ROOT")}));
}

TEST_F(SiteTreeViewSelects, WhatIsClicked) {
  givenTwoHostsWithSubSites();
  click(Qt::LeftButton, placeOf("four.five.six"));
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
  click(Qt::RightButton, placeOf("one.two.three"));
  EXPECT_EQ(tree_.selected(), node("one.two.three"));
}

TEST_F(SiteTreeViewSelects, WhatTheArrowKeysReach) {
  givenTwoHostsWithSubSites();
  QTest::keyClick(&view_, Qt::Key_Down);
  EXPECT_EQ(tree_.selected(), node("one.two.three"));
  QTest::keyClick(&view_, Qt::Key_End);
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
}

TEST_F(SiteTreeViewSelects, TheSameAsBeforeWhenEmptySpaceIsClicked) {
  givenTwoHostsWithSubSites();
  click(Qt::LeftButton, placeOf("four.five.six"));
  click(Qt::LeftButton, emptyPlace());
  click(Qt::RightButton, emptyPlace());
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("four.five.six")}));
}

// A screen reader would read out every change.
TEST_F(SiteTreeViewSelects, NothingElseEvenForAMomentWhenEmptySpaceIsClicked) {
  givenTwoHostsWithSubSites();
  const QSignalSpy changes(view_.selectionModel(), &QItemSelectionModel::selectionChanged);
  click(Qt::LeftButton, emptyPlace());
  EXPECT_EQ(changes.count(), 0);
}

// The popup menu acts on the selected node, so a node is always selected.
TEST_F(SiteTreeViewSelects, TheSameAsBeforeWhenItIsClickedWithCtrl) {
  givenTwoHostsWithSubSites();
  click(Qt::LeftButton, placeOf("four.five.six"));
  click(Qt::LeftButton, placeOf("four.five.six"), Qt::ControlModifier);
  EXPECT_EQ(tree_.selected(), node("four.five.six"));
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("four.five.six")}));
  QTest::keyClick(&view_, Qt::Key_Space, Qt::ControlModifier);
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("four.five.six")}));
}

TEST_F(SiteTreeViewSelects, OneNodeAtATime) {
  givenTwoHostsWithSubSites();
  click(Qt::LeftButton, placeOf("one.two.three"));
  click(Qt::LeftButton, placeOf("four.five.six"), Qt::ControlModifier);
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("four.five.six")}));
  click(Qt::LeftButton, placeOf("one.two.three"), Qt::ShiftModifier);
  EXPECT_EQ(highlighted(), QStringList({QStringLiteral("one.two.three")}));
}

class SiteTreeViewMouseUpTest : public SiteTreeViewTest {
 protected:
  QList<QVariant> lastMouseUp() const {
    return mouseUps_.isEmpty() ? QList<QVariant>() : mouseUps_.last();
  }

  QSignalSpy mouseUps_{&view_, &SiteTreeView::mouseUp};
};

using SiteTreeViewMouseUp = SiteTreeViewMouseUpTest;

TEST_F(SiteTreeViewMouseUp, ComesOnceForEveryButtonReleased) {
  click(Qt::LeftButton, QPoint(30, 8));
  EXPECT_EQ(lastMouseUp(), QList<QVariant>({1, 0, 30, 8}));
  click(Qt::RightButton, QPoint(31, 9));
  EXPECT_EQ(lastMouseUp(), QList<QVariant>({2, 0, 31, 9}));
  click(Qt::MiddleButton, QPoint(32, 10));
  EXPECT_EQ(lastMouseUp(), QList<QVariant>({4, 0, 32, 10}));
  EXPECT_EQ(mouseUps_.count(), 3);
}

TEST_F(SiteTreeViewMouseUp, HasNoCodeForAnyOtherButton) {
  click(Qt::BackButton, QPoint(30, 8));
  EXPECT_EQ(lastMouseUp(), QList<QVariant>({0, 0, 30, 8}));
}

TEST_F(SiteTreeViewMouseUp, ComesOnTheReleaseAndNotOnThePress) {
  QTest::mousePress(view_.viewport(), Qt::RightButton, {}, QPoint(30, 8));
  EXPECT_EQ(mouseUps_.count(), 0);
  QTest::mouseRelease(view_.viewport(), Qt::RightButton, {}, QPoint(30, 8));
  EXPECT_EQ(mouseUps_.count(), 1);
}

TEST_F(SiteTreeViewMouseUp, ComesOverEmptySpaceToo) {
  const QPoint place = emptyPlace();
  click(Qt::LeftButton, place);
  click(Qt::RightButton, place);
  EXPECT_EQ(mouseUps_.count(), 2);
  EXPECT_EQ(lastMouseUp(), QList<QVariant>({2, 0, 200, 290}));
}

TEST_F(SiteTreeViewMouseUp, ComesWhenTheNodeIsSelectedAlready) {
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  NodeId selected = kNoNode;
  QObject::connect(&view_, &SiteTreeView::mouseUp, &view_,
                   [this, &selected] { selected = tree_.selected(); });
  click(Qt::RightButton, placeOf("one.two.three"));
  EXPECT_EQ(selected, node("one.two.three"));
}

TEST_F(SiteTreeViewMouseUp, TellsWhichKeysWereHeld) {
  const QPoint place = emptyPlace();
  click(Qt::RightButton, place, Qt::ShiftModifier);
  EXPECT_EQ(lastMouseUp().value(1).toInt(), 1);
  click(Qt::RightButton, place, Qt::ControlModifier);
  EXPECT_EQ(lastMouseUp().value(1).toInt(), 2);
  click(Qt::RightButton, place, Qt::AltModifier);
  EXPECT_EQ(lastMouseUp().value(1).toInt(), 4);
  click(Qt::RightButton, place, Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(lastMouseUp().value(1).toInt(), 7);
}

TEST_F(SiteTreeViewMouseUp, TakesTheMenuKeyForTheRightButtonOnTheSelectedRow) {
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QApplication::sendEvent(&view_, &event);
  ASSERT_EQ(mouseUps_.count(), 1);
  EXPECT_EQ(lastMouseUp().value(0).toInt(), 2);
  const QPoint at(lastMouseUp().value(2).toInt(), lastMouseUp().value(3).toInt());
  EXPECT_TRUE(view_.visualRect(indexOf("four.five.six")).contains(at));
}

TEST_F(SiteTreeViewMouseUp, TakesTheMenuKeyAtTheTextInALayoutFromRightToLeft) {
  view_.setLayoutDirection(Qt::RightToLeft);
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  QTest::keyClick(&view_, Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_GT(lastMouseUp().value(2).toInt(), view_.viewport()->width() / 2);
}

TEST_F(SiteTreeViewMouseUp, TakesShiftF10ForTheMenuKey) {
  givenTwoHostsWithSubSites();
  tree_.select(node("four.five.six"));
  QTest::keyClick(&view_, Qt::Key_F10, Qt::ShiftModifier);
  ASSERT_EQ(mouseUps_.count(), 1);
  EXPECT_EQ(lastMouseUp().value(0).toInt(), 2);
  EXPECT_EQ(lastMouseUp().value(1).toInt(), 0);
}

TEST_F(SiteTreeViewMouseUp, StaysInsideTheViewForALongRowThatIsOutOfSight) {
  for (int host = 0; host < 100; ++host) add("a.b.c" + std::to_string(host));
  const std::string longHost = "z.y." + std::string(250, 'm');
  add(longHost);
  view_.expandDNSNodes();
  tree_.select(node(longHost));
  view_.verticalScrollBar()->setValue(0);
  ASSERT_FALSE(isOnScreen(longHost));
  QTest::keyClick(&view_, Qt::Key_F10, Qt::ShiftModifier);
  const QPoint at(lastMouseUp().value(2).toInt(), lastMouseUp().value(3).toInt());
  EXPECT_TRUE(view_.viewport()->rect().contains(at));
  EXPECT_EQ(view_.indexAt(at), indexOf(longHost));
}

// The mouse release is reported separately, before or after it.
TEST_F(SiteTreeViewMouseUp, IgnoresTheMousesOwnMenuRequest) {
  QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(30, 8),
                          view_.viewport()->mapToGlobal(QPoint(30, 8)));
  QApplication::sendEvent(view_.viewport(), &event);
  EXPECT_EQ(mouseUps_.count(), 0);
}

using SiteTreeViewLabels = SiteTreeViewTest;

TEST_F(SiteTreeViewLabels, CannotBeEdited) {
  givenTwoHostsWithSubSites();
  tree_.select(node("one.two.three/d"));
  view_.makeVisible(node("one.two.three/d"));
  QTest::keyClick(&view_, Qt::Key_F2);
  click(Qt::LeftButton, placeOf("one.two.three/d"));
  QTest::mouseDClick(view_.viewport(), Qt::LeftButton, {}, placeOf("one.two.three/d"));
  QTest::keyClick(&view_, Qt::Key_X);
  EXPECT_EQ(view_.findChild<QLineEdit*>(), nullptr);
  EXPECT_EQ(tree_.text(node("one.two.three/d")), "d");
}

TEST_F(SiteTreeViewLabels, AreScrolledToWhenTheyAreLong) {
  const std::string segment(280, 'm');
  ASSERT_EQ(view_.horizontalScrollBar()->maximum(), 0);
  add("one.two.three/" + segment);
  view_.expandAll(node("ROOT"), false);
  EXPECT_TRUE(QTest::qWaitFor([this] { return view_.horizontalScrollBar()->maximum() > 0; }));
  const int textWidth = view_.fontMetrics().horizontalAdvance(QString(280, QLatin1Char('m')));
  // The segment is on the third level, so it is indented at least twice.
  EXPECT_GE(view_.columnWidth(0), textWidth + 2 * view_.indentation());
  EXPECT_GE(view_.horizontalScrollBar()->maximum(),
            textWidth + 2 * view_.indentation() - view_.viewport()->width());
}

TEST_F(SiteTreeViewLabels, AreNotCutWhenTheyComeIntoSight) {
  for (int host = 0; host < 100; ++host) add("a.b.c" + std::to_string(host));
  add("z.y." + std::string(250, 'm'));
  view_.expandDNSNodes();
  QApplication::processEvents();
  ASSERT_EQ(view_.horizontalScrollBar()->maximum(), 0);
  view_.verticalScrollBar()->setValue(view_.verticalScrollBar()->maximum());
  EXPECT_GE(view_.columnWidth(0),
            view_.fontMetrics().horizontalAdvance(QString(250, QLatin1Char('m'))));
  EXPECT_TRUE(QTest::qWaitFor([this] { return view_.horizontalScrollBar()->maximum() > 0; }));
}

TEST_F(SiteTreeViewLabels, NeedNoMoreRoomThanThoseThatAreThere) {
  add("z.y." + std::string(250, 'm'));
  view_.expandDNSNodes();
  QApplication::processEvents();
  {
    const SiteTree::BulkChange change(tree_);
    add("one.two.three");
  }
  QApplication::processEvents();
  EXPECT_EQ(view_.columnWidth(0), view_.viewport()->width());
}

TEST_F(SiteTreeViewLabels, NeedLessRoomInASmallerFont) {
  add("z.y." + std::string(250, 'm'));
  view_.expandDNSNodes();
  QApplication::processEvents();
  const int before = view_.columnWidth(0);
  QFont smaller = view_.font();
  smaller.setPointSizeF(smaller.pointSizeF() / 2);
  view_.setFont(smaller);
  QApplication::processEvents();
  EXPECT_LT(view_.columnWidth(0), before);
}

TEST_F(SiteTreeViewLabels, KeepTheirRoomWhileTheViewIsNotInUse) {
  for (int host = 0; host < 100; ++host) add("a.b.c" + std::to_string(host));
  add("z.y." + std::string(250, 'm'));
  view_.expandDNSNodes();
  view_.verticalScrollBar()->setValue(view_.verticalScrollBar()->maximum());
  const int whileInSight = view_.columnWidth(0);
  view_.verticalScrollBar()->setValue(0);
  view_.setEnabled(false);
  QApplication::processEvents();
  EXPECT_EQ(view_.columnWidth(0), whileInSight);
}

TEST_F(SiteTreeViewLabels, HaveNoHeadingAboveThem) { EXPECT_TRUE(view_.isHeaderHidden()); }

TEST_F(SiteTreeViewLabels, AreReadOutUnderTheNameOfTheView) {
  EXPECT_EQ(view_.objectName(), QStringLiteral("TreeView"));
  QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&view_);
  ASSERT_NE(spoken, nullptr);
  EXPECT_EQ(spoken->text(QAccessible::Name), QStringLiteral("Recorded sites"));
}

}  // namespace
}  // namespace quorrix
