#include "main_window/main_form.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QContextMenuEvent>
#include <QMenuBar>
#include <QProxyStyle>
#include <QSet>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <optional>

#include "main_window/main_form_stage.h"

namespace quorrix {
namespace {

using test::MainFormStage;
using test::openWindow;
using test::siteRecord;

class MainFormTest : public testing::Test {
 protected:
  void SetUp() override {
    stage_.start(siteRecord("one.two.three/a/b/c", 'N') + siteRecord("one.two.three/d", 'N') +
                 siteRecord("four.five.six/x/y", 'S'));
  }

  void TearDown() override { stage_.popupMenu().close(); }

  QPoint placeOf(std::string_view key) {
    return stage_.treeView().visualRect(stage_.indexOf(key)).center();
  }

  QPoint emptyPlace() {
    const QPoint place(300, 400);
    EXPECT_TRUE(stage_.treeView().viewport()->rect().contains(place));
    EXPECT_FALSE(stage_.treeView().indexAt(place).isValid());
    return place;
  }

  void click(Qt::MouseButton button, const QPoint& place) {
    QTest::mouseClick(stage_.treeView().viewport(), button, {}, place);
  }

  void select(std::string_view key) { stage_.form.tree().select(stage_.node(key)); }

  QStringList enabledPopupEntries() {
    QStringList names;
    for (const QAction* const action : stage_.popupMenu().actions()) {
      if (!action->isSeparator() && action->isEnabled()) names << action->objectName();
    }
    return names;
  }

  MainFormStage stage_;
};

using MainFormLayout = MainFormTest;

struct LayoutCase {
  QSize window;  // with its frame, in pixels
  QSize tree;
  int firstPanel;
  int secondPanel;
};

// Calculated by hand. 800 x 600 pixels are 12000 x 9000 twips. The tree is 11900 x 7900
// twips, which is 793.3 x 526.7 pixels; the panels are 7800 twips (520 pixels) and 4200
// twips (280 pixels) wide.
constexpr LayoutCase kLayoutCases[] = {
    {{800, 600}, {793, 527}, 520, 280},  {{644, 484}, {637, 411}, 419, 225},
    {{1001, 333}, {994, 260}, 651, 350}, {{400, 777}, {393, 704}, 260, 140},
    {{333, 200}, {326, 127}, 216, 117},
};

TEST_F(MainFormLayout, IsInTwipsOnEveryResize) {
  for (const auto& [window, tree, firstPanel, secondPanel] : kLayoutCases) {
    const QSize frame = stage_.form.frameSize() - stage_.form.size();
    stage_.form.resize(window - frame);
    QCoreApplication::processEvents();
    ASSERT_EQ(stage_.form.frameSize(), window);
    EXPECT_EQ(stage_.treeView().size(), tree);
    EXPECT_EQ(stage_.statusBar().findChild<QLabel*>(QStringLiteral("StatusBarPanel1"))->width(),
              firstPanel);
    EXPECT_EQ(stage_.statusBar().findChild<QLabel*>(QStringLiteral("StatusBarPanel2"))->width(),
              secondPanel);
  }
}

TEST_F(MainFormLayout, DoesNotMoveTheTree) {
  const QPoint place = stage_.treeView().pos();
  for (const auto& layout : kLayoutCases) {
    stage_.form.resize(layout.window);
    QCoreApplication::processEvents();
    EXPECT_EQ(stage_.treeView().pos(), place);
  }
}

TEST_F(MainFormLayout, LeavesTheTreeNoHeightInAWindowTooLowForIt) {
  stage_.form.resize(1, 1);
  QCoreApplication::processEvents();
  // 73 pixels are less than the 1100 twips that everything but the tree takes.
  ASSERT_LE(stage_.form.frameGeometry().height(), 73);
  EXPECT_EQ(stage_.treeView().height(), 0);
  EXPECT_GE(stage_.treeView().width(), 0);
}

// A very large font makes the menu bar this high.
TEST_F(MainFormLayout, EndsTheTreeAtTheStatusBarUnderAHighMenuBar) {
  stage_.form.menuBar()->setMinimumHeight(150);
  QCoreApplication::processEvents();
  stage_.form.resize(640, 480);
  QCoreApplication::processEvents();
  const QPoint bottom =
      stage_.treeView().mapTo(&stage_.form, QPoint(0, stage_.treeView().height()));
  EXPECT_EQ(bottom.y(), stage_.statusBar().y());
}

class LargerFont {
 public:
  LargerFont() {
    QFont larger = before_;
    larger.setPointSizeF(4 * larger.pointSizeF());
    QApplication::setFont(larger);
    QCoreApplication::processEvents();
  }
  ~LargerFont() { QApplication::setFont(before_); }
  LargerFont(const LargerFont&) = delete;
  LargerFont& operator=(const LargerFont&) = delete;

 private:
  QFont before_ = QApplication::font();
};

TEST_F(MainFormLayout, FollowsAFontThatIsMadeLargerWhileItRuns) {
  const int rowBefore = stage_.treeView().visualRect(stage_.indexOf("ROOT")).height();
  const LargerFont font;
  const int line = stage_.treeView().fontMetrics().height();
  ASSERT_GT(line, rowBefore);
  EXPECT_GE(stage_.statusBar().height(), stage_.statusBar().fontMetrics().height());
  EXPECT_GE(stage_.treeView().visualRect(stage_.indexOf("ROOT")).height(), line);
  const QPoint bottom =
      stage_.treeView().mapTo(&stage_.form, QPoint(0, stage_.treeView().height()));
  EXPECT_LE(bottom.y(), stage_.statusBar().y());
}

TEST(MainFormWithALongHost, MakesTheTreeNarrowAgainAfterALargerFont) {
  MainFormStage stage;
  stage.start(siteRecord("www." + std::string(60, 'w') + ".example", 'N'));
  QCoreApplication::processEvents();
  const int width = stage.treeView().columnWidth(0);
  {
    const LargerFont font;
    EXPECT_GT(stage.treeView().columnWidth(0), width);
  }
  QCoreApplication::processEvents();
  EXPECT_EQ(stage.treeView().columnWidth(0), width);
}

// A style that indents the levels of a tree far more than the previous style.
class IndentingStyle {
 public:
  IndentingStyle() { QApplication::setStyle(new Style(QStyleFactory::create(before_))); }
  ~IndentingStyle() { QApplication::setStyle(QStyleFactory::create(before_)); }
  IndentingStyle(const IndentingStyle&) = delete;
  IndentingStyle& operator=(const IndentingStyle&) = delete;

 private:
  class Style final : public QProxyStyle {
   public:
    using QProxyStyle::QProxyStyle;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
      return metric == PM_TreeViewIndentation ? 400
                                              : QProxyStyle::pixelMetric(metric, option, widget);
    }
  };

  QString before_ = QApplication::style()->name();
};

TEST(MainFormWithALongHost, MakesTheTreeNarrowAgainAfterAStyleThatIndentsMore) {
  MainFormStage stage;
  stage.start(siteRecord("www." + std::string(60, 'w') + ".example", 'N'));
  QCoreApplication::processEvents();
  const int width = stage.treeView().columnWidth(0);
  {
    const IndentingStyle style;
    EXPECT_TRUE(QTest::qWaitFor([&] { return stage.treeView().columnWidth(0) > width; }));
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return stage.treeView().columnWidth(0) == width; }));
}

using MainFormCaption = MainFormTest;

TEST_F(MainFormCaption, NamesTheSelectedSiteWhenTheLeftButtonIsReleased) {
  click(Qt::LeftButton, placeOf("four.five.six"));
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  EXPECT_FALSE(stage_.popupMenu().isVisible());
}

TEST_F(MainFormCaption, NamesTheSelectedSiteWhenTheRightButtonIsReleased) {
  click(Qt::RightButton, placeOf("one.two.three"));
  EXPECT_EQ(stage_.caption(), "Quorrix - one.two.three");
}

TEST_F(MainFormCaption, NamesTheSelectedSiteWhenTheMiddleButtonIsReleased) {
  select("one.two.three/d");
  click(Qt::MiddleButton, emptyPlace());
  EXPECT_EQ(stage_.caption(), "Quorrix - one.two.three/d");
  EXPECT_FALSE(stage_.popupMenu().isVisible());
}

TEST_F(MainFormCaption, NamesTheSelectedSiteOnAReleaseOverEmptySpace) {
  select("one.two.three/a");
  click(Qt::LeftButton, emptyPlace());
  EXPECT_EQ(stage_.caption(), "Quorrix - one.two.three/a");
}

TEST_F(MainFormCaption, NamesNoSiteWhenTheRootIsSelected) {
  click(Qt::LeftButton, placeOf("four.five.six"));
  click(Qt::LeftButton, placeOf("ROOT"));
  EXPECT_EQ(stage_.caption(), "Quorrix");
}

TEST_F(MainFormCaption, FollowsTheKeyboardAndNotWhatTheProgramSelects) {
  select("one.two.three");
  EXPECT_EQ(stage_.caption(), "Quorrix");
  QTest::keyClick(&stage_.treeView(), Qt::Key_Down);
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
}

TEST_F(MainFormCaption, ShowsAnAddressLetterByLetter) {
  const struct {
    const char* address;
    const char* caption;
  } cases[] = {
      {"one.two.three/[*]", "Quorrix - one.two.three/[*]"},
      {"one.two.three/[*][*]/x", "Quorrix - one.two.three/[*][*]/x"},
      {"one.two.three/<b>bold</b>", "Quorrix - one.two.three/<b>bold</b>"},
      {"one.two.three/?a=1&b=2", "Quorrix - one.two.three/?a=1&b=2"},
      {"one.two.three/caf\xe9", "Quorrix - one.two.three/caf\xc3\xa9"},
  };
  for (const auto& [address, caption] : cases) {
    stage_.form.tree().addMissingLevels(addressLevels(address), 'N');
    select(address);
    click(Qt::MiddleButton, emptyPlace());
    EXPECT_EQ(stage_.caption(), caption);
  }
}

using MainFormPopup = MainFormTest;

TEST_F(MainFormPopup, OpensWhereTheRightButtonIsReleased) {
  const QPoint place = placeOf("four.five.six");
  click(Qt::RightButton, place);
  EXPECT_TRUE(stage_.popupMenu().isVisible());
  EXPECT_EQ(stage_.popupMenu().pos(), stage_.treeView().viewport()->mapToGlobal(place));
}

TEST_F(MainFormPopup, OpensOverEmptySpaceForWhateverIsSelected) {
  select("four.five.six");
  click(Qt::RightButton, emptyPlace());
  EXPECT_TRUE(stage_.popupMenu().isVisible());
  EXPECT_EQ(stage_.form.tree().selected(), stage_.node("four.five.six"));
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  stage_.choose("PopUpShowAll");
  EXPECT_TRUE(stage_.isExpanded("four.five.six/x"));
}

TEST_F(MainFormPopup, StaysClosedWhenAnotherButtonIsReleased) {
  click(Qt::LeftButton, placeOf("four.five.six"));
  click(Qt::MiddleButton, placeOf("four.five.six"));
  EXPECT_FALSE(stage_.popupMenu().isVisible());
}

TEST_F(MainFormPopup, OpensByTheMenuKeyOverTheSelectedRow) {
  select("four.five.six");
  QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QApplication::sendEvent(&stage_.treeView(), &event);
  EXPECT_TRUE(stage_.popupMenu().isVisible());
  EXPECT_EQ(stage_.caption(), "Quorrix - four.five.six");
  const QPoint place = stage_.treeView().viewport()->mapFromGlobal(stage_.popupMenu().pos());
  EXPECT_EQ(stage_.treeView().indexAt(place), stage_.indexOf("four.five.six"));
}

TEST_F(MainFormPopup, EnablesWhatTheProgramCanDoForASite) {
  click(Qt::RightButton, placeOf("four.five.six"));
  EXPECT_EQ(enabledPopupEntries(),
            QStringList({QStringLiteral("PopUpShowAll"), QStringLiteral("PopUpHideAll"),
                         QStringLiteral("PopUpLaunch"), QStringLiteral("PopUpNotes"),
                         QStringLiteral("PopUpPasswords"), QStringLiteral("PopUpNewPurchase"),
                         QStringLiteral("PopUpPurchases")}));
}

TEST_F(MainFormPopup, OpensWithEverythingDisabledForTheRoot) {
  click(Qt::RightButton, placeOf("four.five.six"));
  stage_.popupMenu().close();
  click(Qt::RightButton, placeOf("ROOT"));
  EXPECT_TRUE(stage_.popupMenu().isVisible());
  EXPECT_EQ(enabledPopupEntries(), QStringList());
  EXPECT_EQ(stage_.caption(), "Quorrix");
}

TEST(MainFormWithTheRootAlone, OpensThePopupWithEverythingDisabled) {
  MainFormStage stage;
  stage.start();
  QTest::mouseClick(stage.treeView().viewport(), Qt::RightButton, {}, QPoint(300, 400));
  EXPECT_TRUE(stage.popupMenu().isVisible());
  for (const QAction* const action : stage.popupMenu().actions()) {
    EXPECT_TRUE(action->isSeparator() || !action->isEnabled())
        << action->objectName().toStdString();
  }
  EXPECT_EQ(stage.caption(), "Quorrix");
  stage.popupMenu().close();
}

TEST_F(MainFormPopup, ShowsAllBelowTheSelectedSite) {
  click(Qt::RightButton, placeOf("one.two.three"));
  stage_.choose("PopUpShowAll");
  EXPECT_TRUE(stage_.isExpanded("one.two.three"));
  EXPECT_TRUE(stage_.isExpanded("one.two.three/a"));
  EXPECT_TRUE(stage_.isExpanded("one.two.three/a/b"));
  EXPECT_FALSE(stage_.isExpanded("four.five.six"));
}

TEST_F(MainFormPopup, HidesAllAndKeepsWhatIsOpenBelow) {
  click(Qt::RightButton, placeOf("one.two.three"));
  stage_.choose("PopUpShowAll");
  stage_.choose("PopUpHideAll");
  EXPECT_FALSE(stage_.isExpanded("one.two.three"));
  EXPECT_FALSE(stage_.isOnScreen("one.two.three/a"));
  stage_.popupMenu().close();
  QTest::keyClick(&stage_.treeView(), Qt::Key_Right);
  EXPECT_TRUE(stage_.isExpanded("one.two.three"));
  EXPECT_TRUE(stage_.isOnScreen("one.two.three/a/b/c"));
}

class MainFormRecordsTest : public MainFormTest {
 protected:
  // Runs `look` on the dialog that opens, then closes it.
  void whenADialogOpens(std::function<void(QDialog&)> look) {
    QTimer::singleShot(0, &stage_.form, [this, look = std::move(look)] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      hourglass_ = stage_.pointer() == Qt::WaitCursor;
      opened_ << dialog->windowTitle();
      if (look) look(*dialog);
      dialog->reject();
    });
  }

  QStringList opened_;
  bool hourglass_ = false;
};

using MainFormRecords = MainFormRecordsTest;

TEST_F(MainFormRecords, OpenForTheSelectedSiteUnderTheHourglass) {
  click(Qt::RightButton, placeOf("four.five.six"));
  stage_.memory.givenAFile("/Quorrix/Data/purchases.dat",
                           "four.five.six" + std::string(287, ' ') + "d~" + std::string(23, ' ') +
                               "p~" + std::string(10, ' ') + "m~" + std::string(48, ' ') + "i~" +
                               std::string(48, ' ') + "t~" + std::string(98, ' ') + "q~   ");
  for (const char* const entry :
       {"PopUpNotes", "PopUpPasswords", "PopUpNewPurchase", "PopUpPurchases"}) {
    whenADialogOpens({});
    stage_.choose(entry);
    EXPECT_TRUE(hourglass_) << entry;
    EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor) << entry;
  }
  EXPECT_EQ(opened_, QStringList({QStringLiteral("Notes - four.five.six"),
                                  QStringLiteral("User ID, Password - four.five.six"),
                                  QStringLiteral("New Purchase - four.five.six"),
                                  QStringLiteral("Purchases - four.five.six")}));
}

TEST_F(MainFormRecords, BelongToTheSiteThatTheMenuWasOpenedFor) {
  click(Qt::RightButton, placeOf("four.five.six"));
  select("one.two.three");
  whenADialogOpens({});
  stage_.choose("PopUpNotes");
  EXPECT_EQ(opened_, QStringList(QStringLiteral("Notes - four.five.six")));
}

TEST_F(MainFormRecords, BelongToTheSelectedSiteAfterTheDisplayWasCleared) {
  click(Qt::RightButton, placeOf("four.five.six"));
  stage_.choose("FileClear");
  stage_.form.tree().addMissingLevels(addressLevels("seven.eight.nine/a/b/c/d/e/f/g"), 'N');
  select("seven.eight.nine");
  whenADialogOpens({});
  stage_.choose("PopUpNotes");
  EXPECT_EQ(opened_, QStringList(QStringLiteral("Notes - seven.eight.nine")));
}

TEST_F(MainFormRecords, ListNoPurchasesWhereThereAreNone) {
  click(Qt::RightButton, placeOf("four.five.six"));
  stage_.messageBox.expect("No purchase information recorded for this web location.",
                           MessageBoxStyle::Information);
  stage_.choose("PopUpPurchases");
  EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
}

using MainFormExit = MainFormTest;

TEST_F(MainFormExit, HidesTheWindowAndUnloadsIt) {
  QSignalSpy unloaded(&stage_.form, &MainForm::unloaded);
  stage_.choose("FileExit");
  EXPECT_FALSE(stage_.form.isVisible());
  EXPECT_EQ(unloaded.count(), 1);
  EXPECT_EQ(stage_.pointer(), Qt::WaitCursor);
}

// Records whether the main window is visible when another one is hidden.
class HidingOrder final : public QObject {
 public:
  HidingOrder(const MainForm& form, QWidget& other) : form_(form) {
    other.installEventFilter(this);
  }

  std::optional<bool> isFormStillVisible;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Hide) isFormStillVisible = form_.isVisible();
    return QObject::eventFilter(watched, event);
  }

 private:
  const MainForm& form_;
};

TEST_F(MainFormExit, HidesTheWindowBeforeTheSearch) {
  stage_.choose("FileSearch");
  QWidget* const search = openWindow(QStringLiteral("SearchDialog"));
  ASSERT_NE(search, nullptr);
  const HidingOrder order(stage_.form, *search);
  stage_.choose("FileExit");
  EXPECT_EQ(order.isFormStillVisible, std::optional(false));
}

TEST_F(MainFormExit, IsWhatTheCloseBoxDoes) {
  QSignalSpy unloaded(&stage_.form, &MainForm::unloaded);
  EXPECT_TRUE(stage_.form.close());
  EXPECT_FALSE(stage_.form.isVisible());
  EXPECT_EQ(unloaded.count(), 1);
}

TEST_F(MainFormExit, HappensOnce) {
  QSignalSpy unloaded(&stage_.form, &MainForm::unloaded);
  stage_.choose("FileExit");
  stage_.form.close();
  stage_.form.FileExit_Click();
  EXPECT_EQ(unloaded.count(), 1);
}

TEST_F(MainFormExit, TakesEveryOtherWindowAlong) {
  QWidget dialog(&stage_.form, Qt::Dialog);
  dialog.setObjectName(QStringLiteral("SomeDialog"));
  dialog.show();
  ASSERT_NE(openWindow(QStringLiteral("SomeDialog")), nullptr);
  stage_.choose("FileExit");
  EXPECT_EQ(openWindow(QStringLiteral("SomeDialog")), nullptr);
}

TEST_F(MainFormExit, TouchesNoFile) {
  stage_.choose("FileExit");
  EXPECT_TRUE(stage_.files.calls().empty());
}

TEST_F(MainFormTest, ReadsOutANameAtEachStopOfTheTabKey) {
  stage_.form.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&stage_.form));
  QSet<QWidget*> stops;
  while (stage_.form.focusWidget() != nullptr && !stops.contains(stage_.form.focusWidget())) {
    QWidget* const stop = stage_.form.focusWidget();
    stops << stop;
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(stop)->text(QAccessible::Name).isEmpty())
        << stop->objectName().toStdString();
    QTest::keyClick(stop, Qt::Key_Tab);
  }
  EXPECT_TRUE(stops.contains(&stage_.treeView()));
}

TEST_F(MainFormTest, GivesTheTreeTheFocus) {
  EXPECT_EQ(stage_.form.focusWidget(), &stage_.treeView());
}

}  // namespace
}  // namespace quorrix
