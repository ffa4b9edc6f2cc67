#include "records/multi_line_box.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>
#include <stdexcept>

#include "shell/plain_text.h"
#include "support/code_pages.h"
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

  // The interface by which a screen reader, dictation or an on-screen keyboard changes
  // the text.
  QAccessibleEditableTextInterface& assistiveTechnology() {
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&box_);
    if (interface == nullptr || interface->editableTextInterface() == nullptr) {
      throw std::logic_error("the box cannot be edited by assistive technology");
    }
    return *interface->editableTextInterface();
  }

  // Presses a key that enters this text, on a keyboard layout that has one.
  void pressKeyOf(const QString& text, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, modifiers, text);
    QApplication::sendEvent(&box_, &press);
  }

  void commit(const QString& text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(&box_, &event);
  }

  void drop(const QString& text) {
    QMimeData data;
    data.setText(text);
    const QPointF place(1, 1);
    QDragEnterEvent enter(place.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(box_.viewport(), &enter);
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(box_.viewport(), &event);
  }

  MultiLineBox box_{9, test::westernCodePage(), nullptr};  // for a field of ten characters
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

TEST_F(MultiLineBoxTest, ShowsNothingOfAStoredTextThatIsAllPadding) {
  box_.showStored("   ");
  EXPECT_EQ(box_.toPlainText(), QString());
  EXPECT_EQ(box_.value(), "   ");
}

TEST_F(MultiLineBoxTest, KeepsTheSelectionWhenAPictureIsPasted) {
  type(QStringLiteral("abc"));
  box_.selectAll();
  QApplication::clipboard()->setImage(QImage(1, 1, QImage::Format_RGB32));
  box_.paste();
  EXPECT_EQ(box_.value(), "abc");
  EXPECT_EQ(box_.textCursor().selectedText(), QStringLiteral("abc"));
}

// The menu of the box offers to paste only what can be pasted.
TEST_F(MultiLineBoxTest, CannotPasteMarkupWithoutAText) {
  auto* const markup = new QMimeData;
  markup->setHtml(QStringLiteral("<b>abc</b>"));
  QApplication::clipboard()->setMimeData(markup);
  EXPECT_FALSE(box_.canPaste());
  QApplication::clipboard()->setText(QStringLiteral("abc"));
  EXPECT_TRUE(box_.canPaste());
}

TEST_F(MultiLineBoxTest, ScrollsToTheEndOfWhatIsPasted) {
  MultiLineBox box(200, test::westernCodePage(), nullptr);
  box.resize(200, 60);
  box.show();
  QApplication::clipboard()->setText(QStringLiteral("line\n").repeated(20));
  box.paste();
  EXPECT_TRUE(box.viewport()->rect().contains(box.cursorRect().center()));
}

TEST_F(MultiLineBoxTest, KeepsWhatIsPastedAgainInAnOverlongText) {
  box_.showStored("abcdefghijklmnop");
  QTextCursor cursor = box_.textCursor();
  cursor.setPosition(0);
  cursor.setPosition(3, QTextCursor::KeepAnchor);
  box_.setTextCursor(cursor);
  paste(QStringLiteral("abcX"));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("abcdefghijklmnop"));
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

TEST_F(MultiLineBoxTest, LimitsWhatAssistiveTechnologyInserts) {
  type(QStringLiteral("abcdefg"));
  assistiveTechnology().insertText(0, QStringLiteral("12345"));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("12abcdefg"));
  EXPECT_EQ(box_.value(), "12abcdefg");
}

TEST_F(MultiLineBoxTest, ShowsWhatWillBeStoredOfWhatAssistiveTechnologyInserts) {
  assistiveTechnology().insertText(0, QString::fromUtf8("\xC4\x81\xF0\x9F\x94\x91x"));
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("??x"));
}

TEST_F(MultiLineBoxTest, LimitsWhatAssistiveTechnologyReplaces) {
  type(QStringLiteral("abcdefghi"));
  assistiveTechnology().replaceText(0, 3, QStringLiteral("12345\n"));
  EXPECT_EQ(box_.value(), "123defghi");
  assistiveTechnology().deleteText(0, 3);
  EXPECT_EQ(box_.value(), "defghi");
}

TEST_F(MultiLineBoxTest, UndoesWhatAssistiveTechnologyInserted) {
  type(QStringLiteral("abcdefgh"));
  placeCursorAt(0);
  assistiveTechnology().insertText(4, QString::fromUtf8("\xC4\x81\xC4\x81"));
  EXPECT_EQ(box_.value(), "abcd?efgh");
  box_.undo();
  EXPECT_EQ(box_.value(), "abcdefgh");
  box_.redo();
  EXPECT_EQ(box_.value(), "abcd?efgh");
}

TEST_F(MultiLineBoxTest, HasNothingToRedoOfWhatItRefused) {
  box_.showStored("123456789 ");
  assistiveTechnology().insertText(0, QStringLiteral("x"));
  EXPECT_FALSE(box_.document()->isRedoAvailable());
  box_.redo();
  EXPECT_EQ(box_.value(), "123456789 ");
  EXPECT_FALSE(box_.document()->isUndoAvailable());
}

TEST_F(MultiLineBoxTest, UndoesWhatWasTypedUpToItsLimitAsOne) {
  type(QStringLiteral("abcdefghijkl"));
  EXPECT_EQ(box_.value(), "abcdefghi");
  EXPECT_EQ(box_.textCursor().position(), 9);
  box_.undo();
  EXPECT_EQ(box_.value(), "");
  box_.redo();
  EXPECT_EQ(box_.value(), "abcdefghi");
}

TEST_F(MultiLineBoxTest, LimitsKeysWhoseCharacterDoesNotPrint) {
  for (const QString& key : {QString(QChar(0x00AD)), QString(QChar(0x200D)), QString(QChar(0xE000)),
                             QString::fromUtf8("\xF0\x9F\x94\x91")}) {
    SCOPED_TRACE(key.toStdString());
    box_.clear();
    for (int i = 0; i < 12; ++i) pressKeyOf(key);
    EXPECT_LE(box_.value().size(), 9U);
    EXPECT_EQ(box_.toPlainText().toStdString(),
              toQString(test::westernCodePage(), box_.value()).toStdString());
  }
}

TEST_F(MultiLineBoxTest, ShowsWhatWillBeStoredOfKeysWhoseCharacterDoesNotPrint) {
  pressKeyOf(QChar(0x00AD));  // is in the code page
  pressKeyOf(QChar(0x200D));
  pressKeyOf(QChar(0xE000));
  EXPECT_EQ(box_.value(), "\xAD??");
}

TEST_F(MultiLineBoxTest, TakesNoKeyWithCtrlForTyping) {
  type(QStringLiteral("abcdefghi"));
  pressKeyOf(QStringLiteral("x"), Qt::ControlModifier);
  box_.clear();
  pressKeyOf(QString(QChar(0x0101)), Qt::ControlModifier);
  pressKeyOf(QStringLiteral("x"), Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(box_.value(), "");
}

TEST_F(MultiLineBoxTest, LimitsWhatIsDropped) {
  type(QStringLiteral("abcdefg"));
  drop(
      QString::fromUtf8("1\xC4\x81"
                        "345"));
  EXPECT_EQ(box_.value().size(), 9U);
  EXPECT_EQ(box_.toPlainText().count(QLatin1Char('?')), 1);
}

TEST_F(MultiLineBoxTest, UndoesWhatAnInputMethodEnteredOverItsLimit) {
  type(QStringLiteral("abcdefgh"));
  placeCursorAt(0);
  commit(QString::fromUtf8("\xE6\x97\xA5\xE6\x9C\xAC"));
  EXPECT_EQ(box_.value(), "?abcdefgh");
  box_.undo();
  EXPECT_EQ(box_.value(), "abcdefgh");
}

TEST_F(MultiLineBoxTest, LeavesACompositionAloneUntilItIsEntered) {
  type(QStringLiteral("abcdefgh"));
  QInputMethodEvent composing(QStringLiteral("nihongo"), {});
  QApplication::sendEvent(&box_, &composing);
  EXPECT_EQ(box_.value(), "abcdefgh");
  EXPECT_EQ(box_.textCursor().block().layout()->preeditAreaText(), QStringLiteral("nihongo"));
  commit(QStringLiteral("ni"));
  EXPECT_EQ(box_.value(), "abcdefghn");
}

TEST_F(MultiLineBoxTest, BringsAnOverlongTextBackWhenItsShorteningIsUndone) {
  box_.showStored("0123456789ab");
  for (const int position : {12, 1}) {
    placeCursorAt(position);
    press(Qt::Key_Backspace);
  }
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("123456789a"));
  box_.undo();
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("0123456789a"));
  box_.undo();
  EXPECT_EQ(box_.toPlainText(), QStringLiteral("0123456789ab"));
  EXPECT_EQ(box_.value(), "0123456789ab");
}

TEST_F(MultiLineBoxTest, HandsOutNoMoreThanItsLimitOfAChangedText) {
  box_.showStored("0123456789ab");
  placeCursorAt(12);
  press(Qt::Key_Backspace);
  EXPECT_EQ(box_.value(), "012345678   ");
}

TEST_F(MultiLineBoxTest, DropsALineBreakThatDoesNotFitWhole) {
  box_.showStored("12345678\n9\nab");
  placeCursorAt(12);
  press(Qt::Key_Backspace);
  EXPECT_EQ(box_.value(), "12345678     ");
}

TEST_F(MultiLineBoxTest, PutsACutTextsCursorBehindWhatWasEntered) {
  type(QStringLiteral("aaaaaaa"));
  placeCursorAt(0);
  paste(QStringLiteral("aaaa"));
  EXPECT_EQ(box_.value(), "aaaaaaaaa");
  EXPECT_EQ(box_.textCursor().position(), 2);
}

TEST_F(MultiLineBoxTest, LeavesTabToTheDialog) { EXPECT_TRUE(box_.tabChangesFocus()); }

}  // namespace
}  // namespace quorrix
