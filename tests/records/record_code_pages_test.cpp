// Notes, logins and purchases in the scripts of every code page: the bytes that are
// stored, and what the dialogs show of them later.

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>

#include "records/new_purchase_dialog.h"
#include "records/notes_dialog.h"
#include "records/record_dialog_stage.h"
#include "records/user_id_password_dialog.h"
#include "support/code_page_samples.h"
#include "support/qt_printers.h"

namespace quorrix {
namespace {

using test::CodePageSample;
using test::notesRecord;
using test::purchaseRecord;
using test::userIDPasswordRecord;

constexpr const char* kSite = "one.two.three/a";

// As a keyboard of the language does.
void type(QWidget& box, const QString& text) {
  for (const QChar character : text) {
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, character);
    QApplication::sendEvent(&box, &press);
  }
}

// As an input method or a screen keyboard does.
void commit(QWidget& box, const QString& text) {
  QInputMethodEvent event;
  event.setCommitString(text);
  QApplication::sendEvent(&box, &event);
}

template <typename Dialog>
void load(Dialog& dialog) {
  dialog.Form_Load();
  dialog.show();
}

class RecordCodePages : public test::RecordDialogStage,
                        public testing::WithParamInterface<CodePageSample> {
 protected:
  RecordCodePages() { codePage_ = &page_; }

  [[nodiscard]] static QString word() { return QString::fromUtf8(GetParam().word); }

  [[nodiscard]] static std::string bytes() { return GetParam().bytes; }

  const CodePage page_{GetParam().codePage};
};

TEST_P(RecordCodePages, StoreANote) {
  {
    NotesDialog dialog(parts());
    load(dialog);
    type(control<QTextEdit>(dialog, "Text1"), word() + QStringLiteral(" \u4E66"));
    EXPECT_EQ(control<QTextEdit>(dialog, "Text1").toPlainText(), word() + QStringLiteral(" ?"));
    press(dialog, "OKButton");
  }
  EXPECT_EQ(memory_.bytesOf(paths_.currentURLNotesFile), notesRecord(kSite, bytes() + " ?"));
  NotesDialog again(parts());
  load(again);
  EXPECT_EQ(control<QTextEdit>(again, "Text1").toPlainText(), word() + QStringLiteral(" ?"));
}

TEST_P(RecordCodePages, StoreANoteFromAnInputMethod) {
  NotesDialog dialog(parts());
  load(dialog);
  commit(control<QTextEdit>(dialog, "Text1"), word());
  press(dialog, "OKButton");
  EXPECT_EQ(memory_.bytesOf(paths_.currentURLNotesFile), notesRecord(kSite, bytes()));
}

TEST_P(RecordCodePages, StoreAUserIDAndPassword) {
  {
    UIDDialog dialog(parts());
    load(dialog);
    type(control<QLineEdit>(dialog, "Text1"), word());
    commit(control<QLineEdit>(dialog, "Text2"), word() + QLatin1Char('1'));
    press(dialog, "OKButton");
  }
  EXPECT_EQ(memory_.bytesOf(paths_.currentUserIDPasswordFile),
            userIDPasswordRecord(kSite, bytes() + "1", bytes()));
  UIDDialog again(parts());
  load(again);
  EXPECT_EQ(control<QLineEdit>(again, "Text1").text(), word());
  EXPECT_EQ(control<QLineEdit>(again, "Text2").text(), word() + QLatin1Char('1'));
}

TEST_P(RecordCodePages, StoreAPurchase) {
  {
    NewPurchaseDialog dialog(parts());
    load(dialog);
    type(control<QLineEdit>(dialog, "Text1"), word());
    type(control<QLineEdit>(dialog, "Text3"), QStringLiteral("1"));
    type(control<QLineEdit>(dialog, "Text2"), word());
    type(control<QTextEdit>(dialog, "Text5"), word());
    press(dialog, "OKButton");
  }
  EXPECT_EQ(memory_.bytesOf(paths_.currentPurchasesFile),
            purchaseRecord(kSite, {.dateStamp = "1/2/26 3:04:05 PM~",
                                   .price = "1~",
                                   .paymentMethod = bytes() + "~",
                                   .item = bytes() + "~",
                                   .description = bytes() + "~",
                                   .quantity = "~"}));
  NewPurchaseDialog again(parts());
  load(again);
  again.getExistingRecord("1/2/26 3:04:05 PM");
  EXPECT_EQ(control<QLineEdit>(again, "Text1").text(), word());
  EXPECT_EQ(control<QTextEdit>(again, "Text5").toPlainText(), word());
}

// All but blanks and line breaks, which the boxes treat in their own ways, and NUL.
TEST_P(RecordCodePages, KeepEveryByteOfNotesThatAreContinued) {
  std::string all;
  for (int byte = 0x21; byte < 0x100; ++byte) all.push_back(static_cast<char>(byte));
  memory_.givenAFile(paths_.currentURLNotesFile, notesRecord(kSite, all));
  NotesDialog dialog(parts());
  load(dialog);
  type(control<QTextEdit>(dialog, "Text1"), QStringLiteral("!"));
  press(dialog, "OKButton");
  EXPECT_EQ(memory_.bytesOf(paths_.currentURLNotesFile), notesRecord(kSite, all + "!"));
}

TEST_P(RecordCodePages, KeepEveryByteOfAUserIDThatIsSavedAgain) {
  for (int first = 0x21; first < 0x100; first += 29) {
    std::string userID;
    for (int byte = first; byte < std::min(first + 29, 0x100); ++byte) {
      userID.push_back(static_cast<char>(byte));
    }
    memory_.givenAFile(paths_.currentUserIDPasswordFile, userIDPasswordRecord(kSite, "", userID));
    UIDDialog dialog(parts());
    load(dialog);
    control<QLineEdit>(dialog, "Text2").insert(QStringLiteral("new"));
    press(dialog, "OKButton");
    EXPECT_EQ(memory_.bytesOf(paths_.currentUserIDPasswordFile),
              userIDPasswordRecord(kSite, "new", userID));
  }
}

INSTANTIATE_TEST_SUITE_P(Page, RecordCodePages, testing::ValuesIn(test::kCodePageSamples),
                         [](const auto& page) { return std::to_string(page.param.codePage); });

class TwoMachines : public test::RecordDialogStage {
 protected:
  void givenNotesInRussian() {
    memory_.givenAFile(paths_.currentURLNotesFile, notesRecord(kSite, "\xC6\xF3\xEA"));
  }

  const CodePage cyrillic_{1251};
};

TEST_F(TwoMachines, ShowOtherLettersUnderAnotherCodePage) {
  givenNotesInRussian();
  NotesDialog dialog(parts());  // Western
  dialog.Form_Load();
  EXPECT_EQ(control<QTextEdit>(dialog, "Text1").toPlainText(), QStringLiteral("Æóê"));
}

TEST_F(TwoMachines, KeepTheBytesThatAreShownAsOtherLetters) {
  givenNotesInRussian();
  {
    NotesDialog western(parts());
    western.Form_Load();
    western.show();
    control<QTextEdit>(western, "Text1").moveCursor(QTextCursor::End);
    QTest::keyClicks(&control<QTextEdit>(western, "Text1"), QStringLiteral("!"));
    press(western, "OKButton");
  }
  EXPECT_EQ(memory_.bytesOf(paths_.currentURLNotesFile), notesRecord(kSite, "\xC6\xF3\xEA!"));
  codePage_ = &cyrillic_;
  NotesDialog russian(parts());
  russian.Form_Load();
  EXPECT_EQ(control<QTextEdit>(russian, "Text1").toPlainText(), QStringLiteral("Жук!"));
}

TEST_F(TwoMachines, ShowAndDeleteAPurchaseOfTheOther) {
  const std::string record =
      purchaseRecord(kSite, {.dateStamp = "2 \xED\xEE\xFF 2026~", .item = "\xC6\xF3\xEA~"});
  memory_.givenAFile(paths_.currentPurchasesFile, record);
  NewPurchaseDialog dialog(parts());
  load(dialog);
  dialog.getExistingRecord("2 \xED\xEE\xFF 2026");
  EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text(), QStringLiteral("Æóê"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text6").text(), QStringLiteral("2 íîÿ 2026"));
  messageBox_.expect("Delete purchase information?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Ok);
  press(dialog, "DeleteButton");
  EXPECT_EQ(memory_.bytesOf(paths_.currentPurchasesFile), std::string(542, ' '));
}

template <unsigned kNumber>
class Boxes : public test::RecordDialogStage {
 protected:
  Boxes() { codePage_ = &page_; }

  const CodePage page_{kNumber};
};

using VietnameseBoxes = Boxes<1258>;
using HebrewBoxes = Boxes<1255>;

TEST_F(VietnameseBoxes, CountTheLettersAsTheyAreStored) {
  UIDDialog dialog(parts());
  dialog.Form_Load();
  auto& box = control<QLineEdit>(dialog, "Text1");
  type(box, QString(14, QChar(0x1EBF)));  // fourteen letters with a tone: 28 of 29 characters
  EXPECT_EQ(box.text(), QString(14, QChar(0x1EBF)));
  EXPECT_EQ(fromQString(page_, box.text()).size(), 28U);
  type(box, QStringLiteral("\u1EBF"));  // does not fit, with its tone
  EXPECT_EQ(fromQString(page_, box.text()).size(), 28U);
  type(box, QStringLiteral("x"));
  EXPECT_EQ(fromQString(page_, box.text()).size(), 29U);
}

// As input methods do that correct the letter before: one backspace for each letter.
TEST_F(VietnameseBoxes, TakeBackALetterWithItsToneAtOnce) {
  UIDDialog dialog(parts());
  dialog.Form_Load();
  auto& box = control<QLineEdit>(dialog, "Text1");
  type(box, QStringLiteral("m\u1EE7a"));
  QTest::keyClick(&box, Qt::Key_Backspace);
  QTest::keyClick(&box, Qt::Key_Backspace);
  EXPECT_EQ(box.text(), QStringLiteral("m"));
}

TEST_F(VietnameseBoxes, TakeBackALetterThatDoesNotFitAndNothingAfterIt) {
  UIDDialog dialog(parts());
  dialog.Form_Load();
  auto& box = control<QLineEdit>(dialog, "Text1");
  type(box, QString(28, QLatin1Char('a')));
  box.setCursorPosition(1);
  type(box, QStringLiteral("\u1EBF"));
  EXPECT_EQ(box.text(), QString(28, QLatin1Char('a')));
  EXPECT_EQ(box.cursorPosition(), 1);
}

TEST_F(VietnameseBoxes, KeepALetterAndItsToneTogetherAtTheEndOfADescription) {
  NewPurchaseDialog dialog(parts());
  dialog.Form_Load();
  auto& box = control<QTextEdit>(dialog, "Text5");
  commit(box, QString(98, QLatin1Char('a')) + QStringLiteral("\u1EBF"));  // 100 of 99
  EXPECT_EQ(box.toPlainText(), QString(98, QLatin1Char('a')));
}

TEST_F(HebrewBoxes, ShowHebrewFromRightToLeftAndEnglishFromLeftToRight) {
  NotesDialog dialog(parts());
  dialog.Form_Load();
  dialog.show();
  auto& box = control<QTextEdit>(dialog, "Text1");
  type(box, QStringLiteral("\u05E9\u05DC\u05D5\u05DD"));
  QTest::keyClick(&box, Qt::Key_Return);
  QTest::keyClicks(&box, QStringLiteral("shalom"));
  const int middle = box.viewport()->width() / 2;
  const QTextBlock hebrew = box.document()->firstBlock();
  EXPECT_GT(hebrew.layout()->lineAt(0).naturalTextRect().left(), middle);
  EXPECT_LT(hebrew.next().layout()->lineAt(0).naturalTextRect().right(), middle);
}

TEST_F(HebrewBoxes, AskAtOnceAboutACharacterInTheMiddleOfText) {
  NotesDialog dialog(parts());
  dialog.Form_Load();
  dialog.show();
  auto& box = control<QTextEdit>(dialog, "Text1");
  type(box, QStringLiteral("\u05E9\u05DC\u05D5\u05DD abc"));
  box.moveCursor(QTextCursor::Start);
  box.moveCursor(QTextCursor::NextCharacter);
  type(box, QStringLiteral("\u0416"));
  EXPECT_EQ(box.toPlainText(), QStringLiteral("\u05E9?\u05DC\u05D5\u05DD abc"));
  press(dialog, "OKButton");
  EXPECT_EQ(memory_.bytesOf(paths_.currentURLNotesFile),
            notesRecord(kSite, "\xF9?\xEC\xE5\xED abc"));
}

TEST_F(HebrewBoxes, AskAtOnceAboutACharacterInTheMiddleOfAUserID) {
  UIDDialog dialog(parts());
  dialog.Form_Load();
  auto& box = control<QLineEdit>(dialog, "Text1");
  type(box, QStringLiteral("\u05E9\u05DC\u05D5\u05DD"));
  box.setCursorPosition(1);
  type(box, QStringLiteral("\u0416"));
  EXPECT_EQ(box.text(), QStringLiteral("\u05E9?\u05DC\u05D5\u05DD"));
  EXPECT_EQ(box.cursorPosition(), 2);
}

// A letter with its point as one character, as some programs put it on the clipboard.
TEST_F(HebrewBoxes, StoreALetterWithItsPoint) {
  UIDDialog dialog(parts());
  dialog.Form_Load();
  auto& box = control<QLineEdit>(dialog, "Text1");
  commit(box, QStringLiteral("\uFB2A"));
  EXPECT_EQ(box.text(), QStringLiteral("\u05E9\u05C1"));
  press(dialog, "OKButton");
  EXPECT_EQ(memory_.bytesOf(paths_.currentUserIDPasswordFile),
            userIDPasswordRecord(kSite, "", "\xF9\xD1"));
}

}  // namespace
}  // namespace quorrix
