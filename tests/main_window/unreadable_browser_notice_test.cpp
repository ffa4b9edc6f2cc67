// The notice as the user sees it: in the main window, while tracking runs.
#include "main_window/unreadable_browser_notice.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QPushButton>
#include <QTest>
#include <utility>

#include "main_window/main_form_stage.h"
#include "support/form_looks.h"

namespace quorrix {
namespace {

using test::siteRecord;

using Reason = UnreadableBrowser::Reason;
using Browsers = std::vector<UnreadableBrowser>;

const UnreadableBrowser kEarlyChromium{.name = "Chromium", .reason = Reason::StartedTooEarly};
const UnreadableBrowser kLonelyChromium{.name = "Chromium", .reason = Reason::NoBus};
const UnreadableBrowser kStrangeFirefox{.name = "Mozilla Firefox", .reason = Reason::UnknownKind};

constexpr const char* kCloseChromium =
    "Close Chromium and start it again to have its pages recorded.";
constexpr const char* kStrangeFirefoxText =
    "Quorrix cannot tell whether a window of Mozilla Firefox is private. Close that window and "
    "open a new one to have its pages recorded.";

class UnreadableBrowserNoticeTest : public testing::Test {
 protected:
  void SetUp() override { stage_.start(siteRecord("one.two.three", 'N')); }

  // Starts tracking, runs one step after each pass, and stops.
  void track(const std::vector<std::function<void()>>& steps) {
    int pump = stage_.events.pumps();
    for (const auto& step : steps) stage_.events.atPump(++pump, step);
    stage_.events.atPump(++pump, [this] { stage_.choose("FileStopTrack"); });
    stage_.track();
  }

  void unreadable(const Browsers& browsers) { stage_.windows.setUnreadable(browsers); }

  // Runs the step while the notice shows these browsers.
  void whileShowing(const Browsers& browsers, const std::function<void()>& step) {
    unreadable(browsers);
    track({step});
  }

  UnreadableBrowserNotice& notice() {
    return *stage_.form.findChild<UnreadableBrowserNotice*>(
        QStringLiteral("UnreadableBrowserNotice"));
  }

  QPushButton& button() {
    return *notice().findChild<QPushButton*>(QStringLiteral("DismissButton"));
  }

  // The text of the notice, which is in the only label that has a text; empty while it is
  // hidden.
  std::string text() {
    if (!notice().isVisible()) return "";
    std::string words;
    for (const QLabel* const label : notice().findChildren<QLabel*>()) {
      words += label->text().toStdString();
    }
    return words;
  }

  void activate() {
    stage_.form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage_.form));
  }

  // Its position in the window; its parent fills the space between menu bar and status
  // bar.
  QRect placeInTheWindow() { return {notice().mapTo(&stage_.form, QPoint()), notice().size()}; }

  std::string faultsOfLayout() {
    return test::faultsOfLayout(stage_.form).join(QLatin1Char('\n')).toStdString();
  }

  test::MainFormStage stage_;
};

using UnreadableBrowserNoticeIs = UnreadableBrowserNoticeTest;

TEST_F(UnreadableBrowserNoticeIs, HiddenWhileEveryBrowserCanBeRead) {
  EXPECT_FALSE(notice().isVisible());
  track({[this] { EXPECT_FALSE(notice().isVisible()); }});
}

TEST_F(UnreadableBrowserNoticeIs, ThereWhileABrowserCannotBeRead) {
  track({[this] { unreadable({kEarlyChromium}); },
         [this] {
           EXPECT_EQ(text(), kCloseChromium);
           unreadable({kEarlyChromium, kStrangeFirefox});
         },
         [this] {
           EXPECT_EQ(text(), std::string(kCloseChromium) + "\n" + kStrangeFirefoxText);
           unreadable({kStrangeFirefox});
         },
         [this] {
           EXPECT_EQ(text(), kStrangeFirefoxText);
           unreadable({});
         },
         [this] { EXPECT_FALSE(notice().isVisible()); }});
}

TEST_F(UnreadableBrowserNoticeIs, GoneWhenTrackingStops) {
  whileShowing({kEarlyChromium}, [this] { EXPECT_TRUE(notice().isVisible()); });
  EXPECT_FALSE(notice().isVisible());
}

TEST_F(UnreadableBrowserNoticeIs, GoneWhenTrackingFails) {
  unreadable({kEarlyChromium});
  stage_.windows.failAt(test::WindowCall::EnumWindows, 2, failure::kDeviceIo);
  stage_.messageBox.expect("Device I/O error. Stopping tracking.", MessageBoxStyle::Critical,
                           MessageBoxButton::Ok, [this] { EXPECT_TRUE(notice().isVisible()); });
  stage_.track();
  EXPECT_FALSE(notice().isVisible());
}

TEST_F(UnreadableBrowserNoticeIs, NoPartOfTheProgramsOwnTexts) {
  whileShowing({kEarlyChromium}, [this] {
    EXPECT_EQ(stage_.caption(), "Quorrix");
    EXPECT_EQ(stage_.panelText(1), "Last archive loaded: none");
    EXPECT_EQ(stage_.panelText(2), "Tracking websites.");
  });
}

TEST_F(UnreadableBrowserNoticeIs, PlainText) {
  whileShowing({{"<b>B</b>&amp;", Reason::StartedTooEarly}}, [this] {
    EXPECT_EQ(text(), "Close <b>B</b>&amp; and start it again to have its pages recorded.");
    for (const QLabel* const label : notice().findChildren<QLabel*>()) {
      EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
    }
  });
}

// --- Place --------------------------------------------------------------------------

using UnreadableBrowserNoticeLayout = UnreadableBrowserNoticeTest;

TEST_F(UnreadableBrowserNoticeLayout, TakesItsHeightFromTheTreeAlone) {
  const QRect tree = stage_.treeView().geometry();
  const QRect statusBar = stage_.statusBar().geometry();
  const QSize window = stage_.form.size();
  whileShowing({kEarlyChromium}, [&] {
    EXPECT_GT(notice().height(), 0);
    EXPECT_EQ(placeInTheWindow().left(), 0);
    EXPECT_EQ(placeInTheWindow().width(), stage_.form.width());
    EXPECT_EQ(placeInTheWindow().bottom() + 1, statusBar.top());
    EXPECT_EQ(stage_.treeView().pos(), tree.topLeft());
    EXPECT_EQ(stage_.treeView().width(), tree.width());
    EXPECT_EQ(stage_.treeView().geometry().bottom() + 1, notice().y());
    EXPECT_EQ(stage_.statusBar().geometry(), statusBar);
    EXPECT_EQ(stage_.form.size(), window);
  });
  EXPECT_EQ(stage_.treeView().geometry(), tree);
}

TEST_F(UnreadableBrowserNoticeLayout, IsHigherWhereTheWindowIsNarrower) {
  whileShowing({kStrangeFirefox}, [this] {
    stage_.form.resize(900, 500);
    QCoreApplication::processEvents();
    const int heightWhereWide = notice().height();
    EXPECT_EQ(faultsOfLayout(), "");
    stage_.form.resize(320, 500);
    QCoreApplication::processEvents();
    ASSERT_EQ(stage_.form.width(), 320);
    EXPECT_GT(notice().height(), heightWhereWide);
    EXPECT_EQ(placeInTheWindow().bottom() + 1, stage_.statusBar().y());
    EXPECT_EQ(faultsOfLayout(), "");
  });
}

TEST_F(UnreadableBrowserNoticeLayout, HasRoomForEveryReasonAndForLongNames) {
  const std::string longName(100, 'n');
  whileShowing({{longName, Reason::StartedTooEarly},
                {"Chromium", Reason::AccessibilityOff},
                {"Google Chrome", Reason::AccessibilityOff},
                {longName, Reason::NoBus},
                {"Mozilla Firefox", Reason::UnknownKind}},
               [this] {
                 const QFontMetrics font = stage_.form.fontMetrics();
                 stage_.form.resize(80 * font.averageCharWidth(), 40 * font.height());
                 QCoreApplication::processEvents();
                 EXPECT_EQ(faultsOfLayout(), "");
               });
}

TEST_F(UnreadableBrowserNoticeLayout, KeepsTheButtonWhereThereIsNoRoomForTheText) {
  whileShowing({kStrangeFirefox}, [this] {
    stage_.form.resize(320, 120);
    QCoreApplication::processEvents();
    EXPECT_EQ(stage_.treeView().height(), 0);
    EXPECT_EQ(placeInTheWindow().bottom() + 1, stage_.statusBar().y());
    EXPECT_TRUE(notice().rect().contains(button().geometry()));
  });
}

TEST_F(UnreadableBrowserNoticeLayout, IsMirroredFromRightToLeft) {
  stage_.form.setLayoutDirection(Qt::RightToLeft);
  whileShowing({kStrangeFirefox}, [this] {
    EXPECT_LT(button().geometry().right(), notice().width() / 2);
    EXPECT_EQ(faultsOfLayout(), "");
  });
}

// --- Dismissing ---------------------------------------------------------------------

using UnreadableBrowserNoticeDismissed = UnreadableBrowserNoticeTest;

TEST_F(UnreadableBrowserNoticeDismissed, GoesAtOnceAndGivesTheTreeItsRoomBack) {
  const QRect tree = stage_.treeView().geometry();
  whileShowing({kEarlyChromium}, [&] {
    QTest::mouseClick(&button(), Qt::LeftButton);
    EXPECT_FALSE(notice().isVisible());
    EXPECT_EQ(stage_.treeView().geometry(), tree);
  });
}

TEST_F(UnreadableBrowserNoticeDismissed, StaysAway) {
  track({[this] { unreadable({kEarlyChromium}); }, [this] { button().click(); },
         [this] {
           EXPECT_FALSE(notice().isVisible());
           unreadable({});
         },
         [this] { unreadable({kEarlyChromium}); }, [this] { EXPECT_FALSE(notice().isVisible()); }});
  whileShowing({kEarlyChromium}, [this] { EXPECT_FALSE(notice().isVisible()); });
}

TEST_F(UnreadableBrowserNoticeDismissed, ComesBackForWhatWasNotDismissedAlone) {
  track({[this] { unreadable({kEarlyChromium}); },
         [this] {
           button().click();
           unreadable({kEarlyChromium, kStrangeFirefox});
         },
         [this] {
           EXPECT_EQ(text(), kStrangeFirefoxText);
           unreadable({kEarlyChromium});
         },
         [this] {
           EXPECT_FALSE(notice().isVisible());
           unreadable({kLonelyChromium});
         },
         [this] { EXPECT_TRUE(notice().isVisible()); }});
}

class UnreadableBrowserNoticeKeys : public UnreadableBrowserNoticeTest,
                                    public testing::WithParamInterface<Qt::Key> {};

TEST_P(UnreadableBrowserNoticeKeys, DismissItFromTheButton) {
  activate();
  whileShowing({kEarlyChromium}, [this] {
    QTest::keyClick(&stage_.treeView(), Qt::Key_Tab);
    ASSERT_TRUE(button().hasFocus());
    QTest::keyClick(&button(), GetParam());
    EXPECT_FALSE(notice().isVisible());
    EXPECT_TRUE(stage_.treeView().hasFocus());
  });
}

INSTANTIATE_TEST_SUITE_P(SpaceAndEnter, UnreadableBrowserNoticeKeys,
                         testing::Values(Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter));

// --- Keyboard -----------------------------------------------------------------------

using UnreadableBrowserNoticeLeaves = UnreadableBrowserNoticeTest;

TEST_F(UnreadableBrowserNoticeLeaves, TheKeyboardWhereItIs) {
  activate();
  ASSERT_TRUE(stage_.treeView().hasFocus());
  track({[this] { unreadable({kEarlyChromium}); },
         [this] {
           EXPECT_TRUE(notice().isVisible());
           EXPECT_TRUE(stage_.treeView().hasFocus());
           unreadable({kStrangeFirefox});
         },
         [this] {
           EXPECT_TRUE(stage_.treeView().hasFocus());
           QTest::mouseClick(&button(), Qt::LeftButton);
           EXPECT_FALSE(notice().isVisible());
           EXPECT_TRUE(stage_.treeView().hasFocus());
         }});
}

TEST_F(UnreadableBrowserNoticeLeaves, TheKeyboardToTheWindowThatHasIt) {
  QWidget other;
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  whileShowing({kEarlyChromium}, [&] {
    EXPECT_TRUE(notice().isVisible());
    EXPECT_EQ(QApplication::activeWindow(), &other);
    EXPECT_EQ(stage_.form.focusWidget(), &stage_.treeView());
  });
}

TEST_F(UnreadableBrowserNoticeLeaves, TheKeyboardOnTheButtonWhenTheTextChanges) {
  activate();
  whileShowing({kEarlyChromium}, [this] { unreadable({kStrangeFirefox}); });
  track({[this] {
           button().setFocus();
           unreadable({kEarlyChromium});
         },
         [this] {
           EXPECT_EQ(text(), kCloseChromium);
           EXPECT_TRUE(button().hasFocus());
         }});
}

TEST_F(UnreadableBrowserNoticeLeaves, TheKeyboardToTheTreeWhenItGoes) {
  activate();
  track({[this] { unreadable({kEarlyChromium}); },
         [this] {
           button().setFocus();
           unreadable({});
         },
         [this] { EXPECT_TRUE(stage_.treeView().hasFocus()); }});
}

TEST_F(UnreadableBrowserNoticeLeaves, TheKeyboardToTheTreeWhenItGoesWhileTheUserIsElsewhere) {
  QWidget other;
  activate();
  track({[this] { unreadable({kEarlyChromium}); },
         [&] {
           button().setFocus();
           other.show();
           other.activateWindow();
           ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
           unreadable({});
         },
         [this] {
           EXPECT_FALSE(notice().isVisible());
           EXPECT_EQ(stage_.form.focusWidget(), &stage_.treeView());
         }});
}

// --- Screen readers -----------------------------------------------------------------

TEST_F(UnreadableBrowserNoticeTest, IsANotificationThatScreenReadersCanRead) {
  whileShowing({kEarlyChromium}, [this] {
    QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&notice());
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Notification);
    EXPECT_EQ(accessible->text(QAccessible::Name).toStdString(), kCloseChromium);
    EXPECT_FALSE(accessible->state().invisible);
    QAccessibleInterface* const dismiss = QAccessible::queryAccessibleInterface(&button());
    EXPECT_EQ(dismiss->role(), QAccessible::PushButton);
    EXPECT_EQ(dismiss->text(QAccessible::Name), QStringLiteral("Dismiss"));
    EXPECT_TRUE(dismiss->state().focusable);
  });
}

// Tests the notice alone, because no screen reader listens on the platform of these
// tests.
TEST(UnreadableBrowserNoticeAlone, AnnouncesEachTextOnce) {
  using Events = std::vector<QAccessible::Event>;
  Events announced;
  QWidget window;
  UnreadableBrowserNotice notice(
      &window, [](const auto& work) { work(); },
      [&](QAccessibleEvent& event) {
        EXPECT_EQ(event.object(), window.children().constFirst());
        EXPECT_FALSE(event.accessibleInterface()->text(QAccessible::Name).isEmpty());
        EXPECT_FALSE(event.accessibleInterface()->state().invisible);
        announced.push_back(event.type());
      });
  const auto newlyAnnounced = [&] { return std::exchange(announced, {}); };
  window.show();
  EXPECT_EQ(newlyAnnounced(), Events{});
  notice.showBrowsers({kEarlyChromium});
  EXPECT_EQ(newlyAnnounced(), Events{QAccessible::Alert});
  notice.showBrowsers({kEarlyChromium});
  EXPECT_EQ(newlyAnnounced(), Events{});
  notice.showBrowsers({kStrangeFirefox});
  EXPECT_EQ(newlyAnnounced(), (Events{QAccessible::ObjectShow, QAccessible::Alert}));
  notice.showBrowsers({});
  EXPECT_EQ(newlyAnnounced(), Events{});
  notice.showBrowsers({kStrangeFirefox});
  EXPECT_EQ(newlyAnnounced(), Events{QAccessible::Alert});
  notice.findChild<QPushButton*>()->click();
  notice.showBrowsers({kStrangeFirefox});
  EXPECT_EQ(newlyAnnounced(), Events{});
}

TEST(UnreadableBrowserNoticeAlone, LeavesDismissingToItsRunner) {
  std::vector<std::function<void()>> works;
  QWidget window;
  UnreadableBrowserNotice notice(&window, [&works](const auto& work) { works.push_back(work); });
  window.show();
  notice.showBrowsers({kEarlyChromium});
  notice.findChild<QPushButton*>()->click();
  EXPECT_TRUE(notice.isVisible());
  ASSERT_EQ(works.size(), 1U);
  works.front()();
  EXPECT_FALSE(notice.isVisible());
}

}  // namespace
}  // namespace quorrix
