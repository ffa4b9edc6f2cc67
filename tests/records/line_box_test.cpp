#include "records/line_box.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QTest>

#include "support/code_pages.h"
#include "support/qt_printers.h"

namespace quorrix {
namespace {

class LineBoxTest : public testing::Test {
 protected:
  void type(const QString& text) { QTest::keyClicks(&box_, text); }

  void paste(const QString& text) {
    QApplication::clipboard()->setText(text);
    box_.paste();
  }

  LineBox box_{5, test::westernCodePage(), nullptr};
};

TEST_F(LineBoxTest, StopsAtItsLimit) {
  type(QStringLiteral("abcdefg"));
  EXPECT_EQ(box_.text(), QStringLiteral("abcde"));
}

TEST_F(LineBoxTest, TakesBackWhatWasInsertedAndNotWhatStandsBehindIt) {
  type(QStringLiteral("abcd"));
  box_.setCursorPosition(1);
  paste(QStringLiteral("XYZ"));
  EXPECT_EQ(box_.text(), QStringLiteral("aXbcd"));
  EXPECT_EQ(box_.cursorPosition(), 2);
}

TEST_F(LineBoxTest, ShowsAtOnceWhatHasNoPlaceInTheCodePage) {
  type(QStringLiteral("ab"));
  box_.setCursorPosition(1);
  paste(QString::fromUtf8("\xF0\x9F\x94\x91\xC3\xA9"));  // a key, and an e with an acute accent
  EXPECT_EQ(box_.text(), QString::fromUtf8("a?\xC3\xA9"
                                           "b"));
  EXPECT_EQ(box_.cursorPosition(), 3);
}

TEST_F(LineBoxTest, CanUndoWhatWasTypedBeforeACharacterWithoutAPlace) {
  type(QStringLiteral("ab"));
  QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QStringLiteral("\u6F22"));
  QApplication::sendEvent(&box_, &press);
  QInputMethodEvent commit;
  commit.setCommitString(QStringLiteral("\u6F22"));
  QApplication::sendEvent(&box_, &commit);
  EXPECT_EQ(box_.text(), QStringLiteral("ab??"));
  while (box_.isUndoAvailable()) box_.undo();
  EXPECT_EQ(box_.text(), QString());
}

TEST_F(LineBoxTest, CanUndoAPasteOfACharacterWithoutAPlace) {
  type(QStringLiteral("ab"));
  QApplication::clipboard()->setText(QStringLiteral("\u6F22"));
  QTest::keyClick(&box_, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(box_.text(), QStringLiteral("ab?"));
  box_.undo();  // with what was typed directly before it
  EXPECT_EQ(box_.text(), QString());
  box_.redo();
  EXPECT_EQ(box_.text(), QStringLiteral("ab?"));
}

TEST_F(LineBoxTest, PastesByTheKeysWhatIsStoredAsItIs) {
  type(QStringLiteral("ab"));
  box_.setCursorPosition(1);
  QApplication::clipboard()->setText(QStringLiteral("XY"));
  QTest::keyClick(&box_, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(box_.text(), QStringLiteral("aXYb"));
  EXPECT_EQ(box_.cursorPosition(), 3);
}

TEST_F(LineBoxTest, MakesABlankOfAPastedLineBreak) {
  paste(QStringLiteral("a\r\nb\nc"));
  EXPECT_EQ(box_.text(), QStringLiteral("a b "));
}

TEST_F(LineBoxTest, KeepsTheCursorBehindAPastedLineBreak) {
  type(QStringLiteral("xy"));
  box_.setCursorPosition(1);
  paste(QStringLiteral("\r\n"));
  type(QStringLiteral("z"));
  EXPECT_EQ(box_.text(), QStringLiteral("x zy"));
}

TEST_F(LineBoxTest, CanUndoWhatWasPastedOverItsLimit) {
  type(QStringLiteral("abc"));
  paste(QStringLiteral("defgh"));
  box_.undo();
  EXPECT_EQ(box_.text(), QStringLiteral("abc"));
}

}  // namespace
}  // namespace quorrix
