#include "records/multi_line_box.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>
#include <QTextCursor>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

class MultiLineBoxTest : public testing::Test {
 protected:
  void type(const QString& text) { QTest::keyClicks(&box_, text); }
  void press(Qt::Key key) { QTest::keyClick(&box_, key); }

  void paste(const QString& text) {
    QApplication::clipboard()->setText(text);
    box_.paste();
  }

  void placeCursorAt(int position) {
    QTextCursor cursor = box_.textCursor();
    cursor.setPosition(position);
    box_.setTextCursor(cursor);
  }

  MultiLineBox box_{9, nullptr};  // for a field of ten characters
};

TEST_F(MultiLineBoxTest, IsEmptyAtFirst) { EXPECT_EQ(box_.value(), ""); }

TEST_F(MultiLineBoxTest, StoresALineBreakAsTwoCharacters) {
  type(QStringLiteral("ab"));
  press(Qt::Key_Return);
  type(QStringLiteral("c"));
  EXPECT_EQ(box_.value(), "ab\r\nc");
}

TEST_F(MultiLineBoxTest, StopsAtItsLimitWithLineBreaksCounted) {
  type(QStringLiteral("abcdefgh"));
  press(Qt::Key_Return);
  EXPECT_EQ(box_.value(), "abcdefgh");
  type(QStringLiteral("ij"));
  EXPECT_EQ(box_.value(), "abcdefghi");
}

TEST_F(MultiLineBoxTest, TakesBackWhatWasInsertedAndNotTheEndOfTheText) {
  type(QStringLiteral("abcdefgh"));
  placeCursorAt(0);
  type(QStringLiteral("XYZ"));
  EXPECT_EQ(box_.value(), "Xabcdefgh");
}

TEST_F(MultiLineBoxTest, CountsACharacterOfTwoCodeUnitsOnce) {
  paste(QString::fromUtf8("\xF0\x9F\x94\x91").repeated(12));
  EXPECT_EQ(box_.value(), "?????????");
}

TEST_F(MultiLineBoxTest, ShowsAtOnceWhatHasNoPlaceInTheCodePage) {
  type(QStringLiteral("a?b"));
  placeCursorAt(1);
  paste(QString::fromUtf8("\xF0\x9F\x94\x91x\xC4\x81"));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("a?x??b"));
  EXPECT_EQ(box_.textCursor().position(), 4);
  box_.undo();
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("a?b"));
}

TEST_F(MultiLineBoxTest, KeepsTheTextBehindWhatIsPastedAtItsBeginning) {
  box_.showStored("tulips    ");
  placeCursorAt(0);
  paste(QStringLiteral("0123456789").repeated(20));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("012tulips"));
}

TEST_F(MultiLineBoxTest, CanUndoWhatWasPastedOverItsLimit) {
  box_.showStored("tulips    ");
  placeCursorAt(3);
  paste(QStringLiteral("0123456789"));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("tul012ips"));
  box_.undo();
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("tulips"));
  EXPECT_EQ(box_.value(), "tulips    ");
  box_.redo();
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("tul012ips"));
}

TEST_F(MultiLineBoxTest, KeepsNonBreakingSpaces) {
  box_.showStored(
      "a\xA0"
      "b       ");
  placeCursorAt(3);
  type(QStringLiteral("c"));
  EXPECT_EQ(box_.value(),
            "a\xA0"
            "bc      ");
}

TEST_F(MultiLineBoxTest, StoresASoftLineBreakLikeAnother) {
  type(QStringLiteral("a"));
  QTest::keyClick(&box_, Qt::Key_Return, Qt::ShiftModifier);
  type(QStringLiteral("b"));
  EXPECT_EQ(box_.value(), "a\r\nb");
}

TEST_F(MultiLineBoxTest, CutsAHugePasteAtOnce) {
  paste(QStringLiteral("line\n").repeated(200'000));
  EXPECT_EQ(box_.value(), "line\r\nlin");
}

TEST_F(MultiLineBoxTest, HasRoomForWhatReplacesASelection) {
  type(QStringLiteral("abcdefghi"));
  box_.selectAll();
  paste(QStringLiteral("123456789012"));
  EXPECT_EQ(box_.value(), "123456789");
}

TEST_F(MultiLineBoxTest, LimitsWhatAnInputMethodEnters) {
  type(QStringLiteral("abcdefg"));
  QInputMethodEvent event;
  event.setCommitString(QString::fromUtf8("\xC3\xA9\xE6\x97\xA5\xC3\xA9"));
  QApplication::sendEvent(&box_, &event);
  EXPECT_EQ(box_.value(), "abcdefg\xE9?");
}

TEST_F(MultiLineBoxTest, ShowsWhatWasStoredWithoutItsPadding) {
  box_.showStored("a\r\nb      ");
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("a\nb"));
  EXPECT_EQ(box_.value(), "a\r\nb      ");
}

TEST_F(MultiLineBoxTest, KeepsThePaddingOfWhatWasStoredWhenItIsChanged) {
  box_.showStored("a\r\nb      ");
  press(Qt::Key_Delete);
  EXPECT_EQ(box_.value(), "\r\nb       ");
}

TEST_F(MultiLineBoxTest, IsEmptyWhenNothingIsLeftOfWhatWasStored) {
  box_.showStored("ab        ");
  box_.selectAll();
  press(Qt::Key_Delete);
  EXPECT_EQ(box_.value(), "");
}

TEST_F(MultiLineBoxTest, IsWhatWasStoredAgainWhenTheChangeIsUndone) {
  box_.showStored("a\nb\tc     ");
  type(QStringLiteral("x"));
  box_.undo();
  EXPECT_EQ(box_.value(), "a\nb\tc     ");
}

TEST_F(MultiLineBoxTest, TakesNothingFromAFullFieldButTheNewCharacter) {
  box_.showStored("0123456789");
  placeCursorAt(10);
  type(QStringLiteral("x"));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("0123456789"));
}

TEST_F(MultiLineBoxTest, HoldsAnOverlongTextToItsLimitOnceItIsShorter) {
  box_.showStored("0123456789");
  placeCursorAt(10);
  press(Qt::Key_Backspace);
  type(QStringLiteral("x"));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("012345678"));
  press(Qt::Key_Backspace);
  type(QStringLiteral("x"));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("01234567x"));
}

TEST_F(MultiLineBoxTest, LeavesTabToTheDialog) { EXPECT_TRUE(box_.tabChangesFocus()); }

}  // namespace
}  // namespace quorrix
