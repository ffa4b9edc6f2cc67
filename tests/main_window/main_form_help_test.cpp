#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>

#include "main_window/main_form_stage.h"
#include "platform/failure.h"
#include "shell/resources.h"

static void takeResourcesAway() { Q_CLEANUP_RESOURCE(quorrix); }

namespace quorrix {
namespace {

using test::FileCall;
using test::MainFormStage;
using test::openWindow;

constexpr const char* kNoHelp = "Error. Unable to start help.";
constexpr const char* kNoAbout = "Error. Unable to start About Quorrix dialog box.";

class MainFormHelpTest : public testing::Test {
 protected:
  void SetUp() override { stage_.start(); }

  void givenTheManual(const std::string& page = "<h1 id=\"top\">The manual</h1><p>Read it.</p>") {
    stage_.memory.givenAFile("/Quorrix/Quorrix.hlp", page);
  }

  static QWidget* helpWindow() { return openWindow(QStringLiteral("HelpWindow")); }

  static QString shownText() { return helpWindow()->findChild<QTextBrowser*>()->toPlainText(); }

  // Expects what the user sees of a failure: the default pointer and the message.
  void expectMessage(const char* text) {
    stage_.messageBox.expect(text, MessageBoxStyle::Critical, MessageBoxButton::Ok,
                             [this] { EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor); });
  }

  MainFormStage stage_;
};

using MainFormHelp = MainFormHelpTest;

TEST_F(MainFormHelp, OpensTheFileBesideTheProgramUnderTheHourglass) {
  givenTheManual();
  Qt::CursorShape whileReading = Qt::ArrowCursor;
  stage_.files.onEveryCall([&] { whileReading = stage_.pointer(); });
  stage_.choose("HelpHelp");
  ASSERT_NE(helpWindow(), nullptr);
  EXPECT_EQ(shownText(), QStringLiteral("The manual\nRead it."));
  EXPECT_EQ(whileReading, Qt::WaitCursor);
  EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
}

TEST_F(MainFormHelp, LeavesTheMainWindowUsable) {
  givenTheManual();
  stage_.choose("HelpHelp");
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_TRUE(stage_.form.isVisible());
}

TEST_F(MainFormHelp, UsesOneWindow) {
  givenTheManual();
  stage_.choose("HelpHelp");
  QWidget* const first = helpWindow();
  first->showMinimized();
  stage_.choose("HelpHelp");
  EXPECT_EQ(helpWindow(), first);
  EXPECT_FALSE(first->isMinimized());
}

TEST_F(MainFormHelp, ReadsTheFileEachTime) {
  givenTheManual();
  stage_.choose("HelpHelp");
  givenTheManual("<h1 id=\"top\">A newer one</h1>");
  stage_.choose("HelpHelp");
  EXPECT_EQ(shownText(), QStringLiteral("A newer one"));
}

TEST_F(MainFormHelp, OpensAgainAfterItWasClosed) {
  givenTheManual();
  stage_.choose("HelpHelp");
  const QSize size = helpWindow()->size();
  helpWindow()->resize(400, 300);
  helpWindow()->close();
  EXPECT_EQ(helpWindow(), nullptr);
  stage_.choose("HelpHelp");
  ASSERT_NE(helpWindow(), nullptr);
  EXPECT_EQ(shownText(), QStringLiteral("The manual\nRead it."));
  EXPECT_EQ(helpWindow()->size(), size);
}

TEST_F(MainFormHelp, WorksWhileTrackingIsOn) {
  givenTheManual();
  stage_.events.atPump(2, [this] {
    EXPECT_TRUE(stage_.form.isTracking());
    stage_.choose("HelpHelp");
  });
  stage_.events.atPump(3, [this] { stage_.choose("FileStopTrack"); });
  stage_.track();
  EXPECT_NE(helpWindow(), nullptr);
}

TEST_F(MainFormHelp, GoesWithTheMainWindow) {
  givenTheManual();
  stage_.choose("HelpHelp");
  stage_.choose("FileExit");
  EXPECT_EQ(helpWindow(), nullptr);
}

TEST_F(MainFormHelp, SaysThatTheFileIsMissing) {
  expectMessage(kNoHelp);
  stage_.choose("HelpHelp");
  EXPECT_EQ(helpWindow(), nullptr);
}

TEST_F(MainFormHelp, SaysTheSameOfWhatIsNoManual) {
  const std::string cases[] = {"", std::string("\x7f\x45LF\0\0", 6), "Caf\xe9",
                               std::string(std::size_t{64} * 1024 * 1024, 'x')};
  for (const std::string& bytes : cases) {
    givenTheManual(bytes);
    expectMessage(kNoHelp);
    stage_.choose("HelpHelp");
    EXPECT_TRUE(stage_.messageBox.isThrough());
    EXPECT_EQ(helpWindow(), nullptr);
  }
}

TEST_F(MainFormHelp, SaysTheSameOfAFolderInItsPlace) {
  stage_.memory.givenAFolder("/Quorrix/Quorrix.hlp");
  expectMessage(kNoHelp);
  stage_.choose("HelpHelp");
}

TEST_F(MainFormHelp, SaysTheSameOfEveryFailure) {
  givenTheManual();
  for (const int number : {7, 28, 53, 57, 61, 67, 68, 71, 75, 76, 321, 31001, 5, 51}) {
    for (const FileCall call : {FileCall::OpenForReading, FileCall::Length, FileCall::ReadAt}) {
      stage_.files.failAtCall(call, 1, number);
      expectMessage(kNoHelp);
      stage_.choose("HelpHelp");
      EXPECT_EQ(helpWindow(), nullptr) << number;
    }
  }
  stage_.choose("HelpHelp");
  EXPECT_NE(helpWindow(), nullptr);
}

TEST_F(MainFormHelp, KeepsWhatItShowsWhenTheFileIsGone) {
  givenTheManual();
  stage_.choose("HelpHelp");
  stage_.memory.deleteFile("/Quorrix/Quorrix.hlp");
  expectMessage(kNoHelp);
  stage_.choose("HelpHelp");
  EXPECT_EQ(shownText(), QStringLiteral("The manual\nRead it."));
}

class MainFormHelpLinks : public MainFormHelpTest {
 protected:
  void followTheLink() {
    givenTheManual("<p><a href=\"http://www.lantern.example/?q=%C3%A9&amp;r\">lanterns</a></p>");
    stage_.choose("HelpHelp");
    auto* const browser = helpWindow()->findChild<QTextBrowser*>();
    QTest::keyClick(browser, Qt::Key_Tab);
    QTest::keyClick(browser, Qt::Key_Return);
  }
};

TEST_F(MainFormHelpLinks, AreOpenedLikeASite) {
  followTheLink();
  EXPECT_EQ(stage_.commandShell.lines,
            std::vector<std::string>{"start http://www.lantern.example/?q=%C3%A9&r"});
}

TEST_F(MainFormHelpLinks, SayThatTheyCannotBeOpened) {
  stage_.commandShell.failure = 53;
  stage_.messageBox.expect("Error. Unable to link site in browser.", MessageBoxStyle::Critical);
  followTheLink();
}

using MainFormAbout = MainFormHelpTest;

TEST_F(MainFormAbout, ShowsTheBoxUnderTheHourglass) {
  QString version;
  Qt::CursorShape pointer = Qt::ArrowCursor;
  QTimer::singleShot(0, &stage_.form, [&] {
    auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->windowTitle(), QStringLiteral("About Quorrix"));
    version = box->findChild<QLabel*>(QStringLiteral("lblVersion"))->text();
    pointer = stage_.pointer();
    box->findChild<QPushButton*>()->click();
  });
  stage_.choose("HelpAbout");
  EXPECT_EQ(version, QStringLiteral("Version 1.0.0"));
  EXPECT_EQ(pointer, Qt::WaitCursor);
  EXPECT_EQ(stage_.pointer(), Qt::ArrowCursor);
  EXPECT_EQ(openWindow(QStringLiteral("AboutBox")), nullptr);
}

TEST_F(MainFormAbout, SaysThatItCannotBeOpened) {
  takeResourcesAway();
  expectMessage(kNoAbout);
  stage_.choose("HelpAbout");
  registerResources();
  EXPECT_EQ(openWindow(QStringLiteral("AboutBox")), nullptr);
}

}  // namespace
}  // namespace quorrix
