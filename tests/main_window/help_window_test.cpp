#include "main_window/help_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QScrollBar>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTreeWidget>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

// Long enough that the chapters do not fit on the screen together.
std::string longText() {
  std::string text;
  for (int line = 0; line < 60; ++line) text += "<p>Nothing of note.</p>";
  return text;
}

std::string page() {
  return "<html><body><h1 id=\"top\">The manual</h1>"
         "<p>Go to <a href=\"#two\">chapter two</a> or to the "
         "<a href=\"https://www.lantern.example/a?b=c%20d\">lanterns</a>.</p>" +
         longText() + "<h2 id=\"one\">Chapter one</h2><p>The harbour is near.</p>" + longText() +
         "<h3 id=\"more\">More &amp; more</h3>" + longText() +
         "<h2 id=\"two\">Chapter two</h2><p>The Harbour is far.</p>" + longText() +
         "</body></html>";
}

class HelpWindowTest : public testing::Test {
 protected:
  void SetUp() override {
    window_ = new HelpWindow(
        [this](const QUrl& address) { opened_ << address.toString(QUrl::FullyEncoded); },
        [this](const auto& work) {
          ++worksRun_;
          work();
        });
  }

  void TearDown() override { delete window_.data(); }

  void show(const std::string& html) {
    window_->showPage(html);
    window_->show();
    window_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
  }

  template <typename Control>
  Control& control(const char* name) {
    return *window_->findChild<Control*>(QString::fromLatin1(name));
  }

  QTextBrowser& browser() { return control<QTextBrowser>("Browser"); }
  QTreeWidget& contents() { return control<QTreeWidget>("Contents"); }
  QLineEdit& findBox() { return control<QLineEdit>("FindBox"); }
  QString findResult() { return control<QLabel>("FindResult").text(); }
  QPushButton& button(const char* name) { return control<QPushButton>(name); }
  void press(const char* name) { QTest::mouseClick(&button(name), Qt::LeftButton); }

  // The first line on the screen.
  QString firstLineShown() { return browser().cursorForPosition(QPoint(20, 14)).block().text(); }

  int place() { return browser().verticalScrollBar()->value(); }
  QString selected() { return browser().textCursor().selectedText(); }
  int selectedAt() { return browser().textCursor().selectionStart(); }

  QTreeWidgetItem* entry(const char* text) {
    return contents()
        .findItems(QString::fromUtf8(text), Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
  }

  void clickEntry(const char* text) {
    contents().expandAll();
    contents().scrollToItem(entry(text));
    QTest::mouseClick(contents().viewport(), Qt::LeftButton, {},
                      contents().visualItemRect(entry(text)).center());
  }

  void find(const char* text) {
    findBox().setText(QString::fromUtf8(text));
    QTest::keyClick(&findBox(), Qt::Key_Return);
  }

  QPointer<HelpWindow> window_;
  QStringList opened_;
  int worksRun_ = 0;  // works run by the runner that the window was given
};

TEST_F(HelpWindowTest, RunsWhatTheUserAsksForWithItsRunner) {
  show(page());
  const auto worksRunBy = [this](const auto& action) {
    worksRun_ = 0;
    action();
    return worksRun_;
  };
  EXPECT_EQ(worksRunBy([this] { findBox().setText(QStringLiteral("harbour")); }), 1);
  EXPECT_EQ(worksRunBy([this] { QTest::keyClick(&findBox(), Qt::Key_Return); }), 1);
  EXPECT_EQ(worksRunBy([this] { press("FindNextButton"); }), 1);
  EXPECT_EQ(worksRunBy([this] { press("FindPreviousButton"); }), 1);
  EXPECT_EQ(worksRunBy([this] { QTest::keyClick(window_, Qt::Key_F3); }), 1);
  EXPECT_GE(worksRunBy([this] { clickEntry("Chapter one"); }), 1);
}

using HelpContents = HelpWindowTest;

TEST_F(HelpContents, StayAsTheyAreWhenTheSamePageIsShownAgain) {
  show(page());
  entry("Chapter one")->setExpanded(true);
  contents().setCurrentItem(entry("More & more"));
  const QTreeWidgetItem* const before = entry("More & more");
  show(page());
  EXPECT_EQ(entry("More & more"), before);
  EXPECT_TRUE(entry("Chapter one")->isExpanded());
  EXPECT_EQ(contents().currentItem(), before);
  show("<h1 id=\"top\">Another</h1>");
  EXPECT_EQ(contents().currentItem()->text(0), QStringLiteral("Another"));
}

TEST_F(HelpContents, HoldEveryHeadingBelowTheOneItBelongsTo) {
  show(page());
  ASSERT_EQ(contents().topLevelItemCount(), 1);
  const QTreeWidgetItem* const top = contents().topLevelItem(0);
  EXPECT_EQ(top->text(0), QStringLiteral("The manual"));
  ASSERT_EQ(top->childCount(), 2);
  EXPECT_EQ(top->child(0)->text(0), QStringLiteral("Chapter one"));
  ASSERT_EQ(top->child(0)->childCount(), 1);
  EXPECT_EQ(top->child(0)->child(0)->text(0), QStringLiteral("More & more"));
  EXPECT_EQ(top->child(1)->text(0), QStringLiteral("Chapter two"));
  EXPECT_TRUE(top->isExpanded());
}

TEST_F(HelpContents, LeadToTheHeadingByAClick) {
  show(page());
  clickEntry("Chapter two");
  EXPECT_EQ(firstLineShown(), QStringLiteral("Chapter two"));
  clickEntry("More & more");
  EXPECT_EQ(firstLineShown(), QStringLiteral("More & more"));
}

TEST_F(HelpContents, LeadToTheHeadingByTheKeyboard) {
  show(page());
  contents().setFocus();
  QTest::keyClick(&contents(), Qt::Key_Down);
  QTest::keyClick(&contents(), Qt::Key_Return);
  EXPECT_EQ(firstLineShown(), QStringLiteral("Chapter one"));
}

TEST_F(HelpContents, AreEmptyForAPageWithoutHeadings) {
  show("Words and nothing else.");
  EXPECT_EQ(contents().topLevelItemCount(), 0);
  EXPECT_EQ(browser().toPlainText(), QStringLiteral("Words and nothing else."));
}

TEST_F(HelpContents, TakeHeadingsInWhateverOrderTheyCome) {
  show(
      "<h3 id=a>Deep</h3><h1 id=b>High</h1><h6 id=c>Deepest</h6><h2 "
      "id=d>Between</h2><h4>None</h4>");
  ASSERT_EQ(contents().topLevelItemCount(), 2);
  EXPECT_EQ(contents().topLevelItem(0)->text(0), QStringLiteral("Deep"));
  ASSERT_EQ(contents().topLevelItem(1)->childCount(), 2);
  EXPECT_EQ(contents().topLevelItem(1)->child(0)->text(0), QStringLiteral("Deepest"));
  EXPECT_EQ(contents().topLevelItem(1)->child(1)->text(0), QStringLiteral("Between"));
}

using HelpHistory = HelpWindowTest;

TEST_F(HelpHistory, IsEmptyAtFirst) {
  show(page());
  EXPECT_FALSE(button("BackButton").isEnabled());
  EXPECT_FALSE(button("ForwardButton").isEnabled());
}

TEST_F(HelpHistory, LeadsBackAndForward) {
  show(page());
  browser().verticalScrollBar()->setValue(120);
  clickEntry("Chapter one");
  clickEntry("Chapter two");
  press("BackButton");
  EXPECT_EQ(firstLineShown(), QStringLiteral("Chapter one"));
  press("BackButton");
  EXPECT_EQ(place(), 120);
  EXPECT_FALSE(button("BackButton").isEnabled());
  press("ForwardButton");
  EXPECT_EQ(firstLineShown(), QStringLiteral("Chapter one"));
  press("ForwardButton");
  EXPECT_EQ(firstLineShown(), QStringLiteral("Chapter two"));
  EXPECT_FALSE(button("ForwardButton").isEnabled());
}

TEST_F(HelpHistory, HasKeys) {
  show(page());
  clickEntry("Chapter two");
  QTest::keyClick(window_, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(place(), 0);
  QTest::keyClick(window_, Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(firstLineShown(), QStringLiteral("Chapter two"));
}

using HelpLinks = HelpWindowTest;

TEST_F(HelpLinks, LeadToAPlaceInThePage) {
  show(page());
  QTest::keyClick(&browser(), Qt::Key_Tab);
  QTest::keyClick(&browser(), Qt::Key_Return);
  EXPECT_EQ(firstLineShown(), QStringLiteral("Chapter two"));
  EXPECT_TRUE(button("BackButton").isEnabled());
  EXPECT_EQ(opened_, QStringList());
}

TEST_F(HelpLinks, OutOfThePageAreOpenedByTheProgramThatTheUserChose) {
  show(page());
  QTest::keyClick(&browser(), Qt::Key_Tab);
  QTest::keyClick(&browser(), Qt::Key_Tab);
  EXPECT_EQ(opened_, QStringList());
  QTest::keyClick(&browser(), Qt::Key_Return);
  EXPECT_EQ(opened_, QStringList(QStringLiteral("https://www.lantern.example/a?b=c%20d")));
  EXPECT_EQ(browser().document()->firstBlock().text(), QStringLiteral("The manual"));
  EXPECT_EQ(place(), 0);
}

TEST_F(HelpLinks, ToAnythingElseDoNothing) {
  for (const char* const target : {"file:///etc/hostname", "other.html", "javascript:alert(1)",
                                   "ftp://www.lantern.example/", "mailto:a@b.example", "qrc:/x"}) {
    show(std::string("<p><a href=\"") + target + "\">there</a></p>");
    QTest::keyClick(&browser(), Qt::Key_Tab);
    QTest::keyClick(&browser(), Qt::Key_Return);
    EXPECT_EQ(browser().toPlainText(), QStringLiteral("there")) << target;
    EXPECT_EQ(opened_, QStringList()) << target;
  }
}

TEST(HelpPictures, AreReadFromThePageAndFromNoFile) {
  QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("red.png"));
  QImage red(8, 8, QImage::Format_RGB32);
  red.fill(Qt::red);
  ASSERT_TRUE(red.save(file));
  QFile saved(file);
  ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
  const QByteArray bytes = saved.readAll().toBase64();

  const struct {
    QByteArray source;
    bool isShown;
  } cases[] = {{"data:image/png;base64," + bytes, true},
               {QUrl::fromLocalFile(file).toEncoded(), false},
               {file.toUtf8(), false},
               {":/splash.gif", false},
               {"qrc:/splash.gif", false},
               {"http://127.0.0.1:9/red.png", false}};
  for (const auto& [source, isShown] : cases) {
    HelpWindow window([](const QUrl&) {}, [](const auto& work) { work(); });
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.showPage("<p><img src=\"" + source.toStdString() + "\" width=8 height=8></p>");
    window.show();
    auto& browser = *window.findChild<QTextBrowser*>();
    const QImage picture = browser.grab().toImage();
    bool isRed = false;
    for (int y = 0; y < picture.height() && !isRed; ++y) {
      for (int x = 0; x < picture.width() && !isRed; ++x) {
        isRed = picture.pixelColor(x, y) == QColor(Qt::red);
      }
    }
    EXPECT_EQ(isRed, isShown) << source.left(40).toStdString();
  }
}

using HelpFind = HelpWindowTest;

TEST_F(HelpFind, GoesFromPlaceToPlaceAndRoundTheEnd) {
  show(page());
  find("harbour");
  EXPECT_EQ(selected(), QStringLiteral("harbour"));
  const int first = selectedAt();
  EXPECT_EQ(findResult(), QString());
  press("FindNextButton");
  EXPECT_EQ(selected(), QStringLiteral("Harbour"));
  EXPECT_GT(selectedAt(), first);
  EXPECT_EQ(findResult(), QString());
  press("FindNextButton");
  EXPECT_EQ(selectedAt(), first);
  EXPECT_EQ(findResult(), QStringLiteral("Searched on from the beginning."));
}

TEST_F(HelpFind, GoesBackwardAndRoundTheBeginning) {
  show(page());
  find("harbour");
  const int first = selectedAt();
  press("FindPreviousButton");
  EXPECT_EQ(selected(), QStringLiteral("Harbour"));
  EXPECT_EQ(findResult(), QStringLiteral("Searched on from the end."));
  press("FindPreviousButton");
  EXPECT_EQ(selectedAt(), first);
  EXPECT_EQ(findResult(), QString());
}

TEST_F(HelpFind, BringsThePlaceToTheScreen) {
  show(page());
  find("is far");
  EXPECT_TRUE(browser().viewport()->rect().contains(browser().cursorRect().center()));
  EXPECT_GT(place(), 0);
}

TEST_F(HelpFind, SaysWhatIsNotThere) {
  show(page());
  find("lighthouse <b>");
  EXPECT_EQ(findResult(), QStringLiteral("Not found in the manual: lighthouse <b>"));
  EXPECT_EQ(selected(), QString());
  QTest::keyClick(&findBox(), Qt::Key_X);
  EXPECT_EQ(findResult(), QString());
}

TEST_F(HelpFind, LeavesThePlaceWhereItIsWhenNothingIsFound) {
  show(page());
  find("harbour");
  const int first = selectedAt();
  find("lighthouse");
  EXPECT_EQ(selectedAt(), first);
}

TEST_F(HelpFind, HasKeys) {
  show(page());
  QTest::keyClick(window_, Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(findBox().hasFocus());
  QTest::keyClicks(&findBox(), QStringLiteral("harbour"));
  QTest::keyClick(window_, Qt::Key_F3);
  EXPECT_EQ(selected(), QStringLiteral("harbour"));
  QTest::keyClick(window_, Qt::Key_F3);
  EXPECT_EQ(selected(), QStringLiteral("Harbour"));
  QTest::keyClick(window_, Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(selected(), QStringLiteral("harbour"));
}

TEST_F(HelpFind, AsksForATextWhereThereIsNone) {
  show(page());
  QTest::keyClick(window_, Qt::Key_F3);
  EXPECT_TRUE(findBox().hasFocus());
  EXPECT_EQ(findResult(), QString());
}

TEST_F(HelpFind, DoesNotLetALongTextWidenTheWindow) {
  show(page());
  const int width = window_->width();
  find(std::string(5000, 'W').c_str());
  EXPECT_EQ(findBox().text().size(), 100);
  QCoreApplication::processEvents();
  EXPECT_EQ(window_->width(), width);
}

TEST_F(HelpWindowTest, IsNotModal) {
  show(page());
  EXPECT_EQ(window_->windowModality(), Qt::NonModal);
  EXPECT_EQ(window_->windowTitle(), QStringLiteral("Quorrix Help"));
}

TEST_F(HelpWindowTest, GoesWithEscapeAndIsGone) {
  show(page());
  QTest::keyClick(window_, Qt::Key_Escape);
  EXPECT_FALSE(window_->isVisible());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(window_.isNull());
}

TEST_F(HelpWindowTest, KeepsThePlaceInAPageThatShowsAlready) {
  show(page());
  clickEntry("Chapter two");
  window_->showPage(page());
  EXPECT_EQ(firstLineShown(), QStringLiteral("Chapter two"));
  EXPECT_TRUE(button("BackButton").isEnabled());
}

TEST_F(HelpWindowTest, ShowsAnotherPageFromItsBeginning) {
  show(page());
  clickEntry("Chapter two");
  window_->showPage("<h1 id=x>Another</h1>" + longText());
  EXPECT_EQ(place(), 0);
  EXPECT_EQ(firstLineShown(), QStringLiteral("Another"));
  EXPECT_FALSE(button("BackButton").isEnabled());
  ASSERT_EQ(contents().topLevelItemCount(), 1);
  EXPECT_EQ(contents().topLevelItem(0)->text(0), QStringLiteral("Another"));
}

TEST_F(HelpWindowTest, ReadsOutANameAtEachStopOfTheTabKey) {
  show("<h1 id=a>Without links</h1><p>So that Tab goes on.</p>");
  QSet<QWidget*> stops;
  while (window_->focusWidget() != nullptr && !stops.contains(window_->focusWidget())) {
    QWidget* const stop = window_->focusWidget();
    stops << stop;
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(stop)->text(QAccessible::Name).isEmpty())
        << stop->objectName().toStdString();
    QTest::keyClick(stop, Qt::Key_Tab);
  }
  for (QWidget* const control :
       {static_cast<QWidget*>(&browser()), static_cast<QWidget*>(&contents()),
        static_cast<QWidget*>(&findBox()), static_cast<QWidget*>(&button("FindNextButton")),
        static_cast<QWidget*>(&button("FindPreviousButton"))}) {
    EXPECT_TRUE(stops.contains(control)) << control->objectName().toStdString();
  }
}

QColor colourOfFirstLink(const QTextBrowser& browser) {
  for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextCharFormat format = part.fragment().charFormat();
      if (format.isAnchor() && !format.anchorHref().isEmpty()) return format.foreground().color();
    }
  }
  return {};
}

TEST_F(HelpWindowTest, FollowsAChangeOfTheDesktopsColours) {
  const QPalette before = QApplication::palette();
  show(page());
  clickEntry("Chapter one");
  const int shown = place();
  QPalette dark(QColor(32, 32, 32), QColor(20, 20, 20));
  dark.setColor(QPalette::Link, QColor(90, 200, 250));
  QApplication::setPalette(dark);
  QCoreApplication::processEvents();
  EXPECT_EQ(colourOfFirstLink(browser()), QColor(90, 200, 250));
  EXPECT_EQ(place(), shown);
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace quorrix
