#include "records/notes_dialog.h"

#include <QApplication>
#include <QClipboard>

#include "records/record_dialog_stage.h"

namespace quorrix {
namespace {

using test::notesRecord;

constexpr const char* kReplaceUnread =
    "There are notes for this site, which could not be read when this window opened. Replace them?";

class NotesDialogTest : public test::RecordDialogStage {
 protected:
  // Loads a dialog while the file cannot be read. Afterwards it can be read again.
  void loadInVain(NotesDialog& dialog) {
    files_.failAtCall(test::FileCall::OpenForReading, 1, 75);
    messageBox_.expect("Unable to open Notes window. Path/file access error.",
                       MessageBoxStyle::Critical);
    dialog.Form_Load();
    files_.reset();
    dialog.show();
  }

  void givenNotes(const std::string& notes) {
    memory_.givenAFile(paths_.currentURLNotesFile, notesRecord("one.two.three/a", notes));
  }
  const std::string& file() { return memory_.bytesOf(paths_.currentURLNotesFile); }
};

TEST_F(NotesDialogTest, OpensEmptyWithDeleteDisabledForASiteWithoutNotes) {
  NotesDialog dialog(parts());
  dialog.Form_Load();
  EXPECT_EQ(captionOf(dialog), "Notes - one.two.three/a");
  EXPECT_EQ(control<QTextEdit>(dialog, "Text1").toPlainText(), QString());
  EXPECT_FALSE(isEnabled(dialog, "DeleteButton"));
}

TEST_F(NotesDialogTest, SavesLinesWithTheirLineEndsAndCloses) {
  NotesDialog dialog(parts());
  dialog.Form_Load();
  dialog.show();
  QTest::keyClicks(&control<QTextEdit>(dialog, "Text1"), QStringLiteral("first"));
  QTest::keyClick(&control<QTextEdit>(dialog, "Text1"), Qt::Key_Return);
  QTest::keyClicks(&control<QTextEdit>(dialog, "Text1"), QStringLiteral("second"));
  press(dialog, "OKButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "first\r\nsecond"));
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(NotesDialogTest, LeavesTheBytesOfNotesThatWereNotChanged) {
  givenNotes("first\r\nsecond\n third");
  NotesDialog dialog(parts());
  dialog.Form_Load();
  EXPECT_EQ(control<QTextEdit>(dialog, "Text1").toPlainText(),
            QStringLiteral("first\nsecond\n third"));
  EXPECT_TRUE(isEnabled(dialog, "DeleteButton"));
  press(dialog, "OKButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "first\r\nsecond\n third"));
}

TEST_F(NotesDialogTest, LetsTheUserTypeBehindStoredNotes) {
  givenNotes("roses");
  NotesDialog dialog(parts());
  dialog.Form_Load();
  dialog.show();
  // The caret is after the stored text.
  QTest::keyClicks(&control<QTextEdit>(dialog, "Text1"), QStringLiteral(" and tulips"));
  press(dialog, "OKButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "roses and tulips"));
}

TEST_F(NotesDialogTest, ChangesNothingWhenTheBoxWasCleared) {
  givenNotes("roses");
  NotesDialog dialog(parts());
  dialog.Form_Load();
  dialog.show();
  control<QTextEdit>(dialog, "Text1").selectAll();
  QTest::keyClick(&control<QTextEdit>(dialog, "Text1"), Qt::Key_Delete);
  press(dialog, "OKButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "roses"));
}

TEST_F(NotesDialogTest, TakesNoMoreThan1023StoredCharacters) {
  NotesDialog dialog(parts());
  dialog.Form_Load();
  auto& box = control<QTextEdit>(dialog, "Text1");
  QApplication::clipboard()->setText(QStringLiteral("a\n") + QString(1100, QLatin1Char('n')));
  box.paste();
  press(dialog, "OKButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "a\r\n" + std::string(1020, 'n')));
}

TEST_F(NotesDialogTest, DeletesAfterConfirmationAndStaysOpen) {
  givenNotes("roses");
  NotesDialog dialog(parts());
  dialog.Form_Load();
  dialog.show();
  messageBox_.expect("Delete notes?", MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel);
  press(dialog, "DeleteButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "roses"));
  messageBox_.expect("Delete notes?", MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  press(dialog, "DeleteButton");
  EXPECT_EQ(file(), std::string(1324, ' '));
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_FALSE(isEnabled(dialog, "DeleteButton"));
  EXPECT_EQ(control<QTextEdit>(dialog, "Text1").toPlainText(), QString());
}

TEST_F(NotesDialogTest, WorksOnTheSiteThatIsSelectedWhenOKIsPressed) {
  NotesDialog dialog(parts());
  dialog.Form_Load();
  control<QTextEdit>(dialog, "Text1").insertPlainText(QStringLiteral("roses"));
  tree_.select(tree_.at("one.two.three"));
  press(dialog, "OKButton");
  EXPECT_EQ(file(), notesRecord("one.two.three", "roses"));
}

TEST_F(NotesDialogTest, TellsOfEachFailure) {
  givenNotes("roses");
  NotesDialog dialog(parts());
  files_.failAtCall(test::FileCall::OpenForReading, 1, 76);
  messageBox_.expect("Unable to open Notes window. Path not found.", MessageBoxStyle::Critical);
  dialog.Form_Load();
  EXPECT_EQ(captionOf(dialog), "Notes");
  control<QTextEdit>(dialog, "Text1").insertPlainText(QStringLiteral("tulips"));
  files_.reset();
  files_.failAtCall(test::FileCall::WriteAt, 1, 61);
  messageBox_.expect(kReplaceUnread, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect("Unable to save notes. Unknown error.", MessageBoxStyle::Critical);
  press(dialog, "OKButton");
  files_.reset();
  files_.failAtCall(test::FileCall::WriteAt, 1, 57);
  messageBox_.expect("Delete notes?", MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect("Delete notes?", MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect("Unable to delete notes. Device I/O error.", MessageBoxStyle::Critical);
  press(dialog, "DeleteButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "roses"));
  EXPECT_EQ(dialog.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(NotesDialogTest, AsksBeforeItReplacesNotesThatWereNeverRead) {
  givenNotes("roses");
  NotesDialog dialog(parts());
  loadInVain(dialog);
  control<QTextEdit>(dialog, "Text1").insertPlainText(QStringLiteral("tulips"));
  messageBox_.expect(kReplaceUnread, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel);
  press(dialog, "OKButton");
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "roses"));
  messageBox_.expect(kReplaceUnread, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  press(dialog, "OKButton");
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "tulips"));
}

TEST_F(NotesDialogTest, SavesTheFirstNotesOfASiteEvenIfTheFileCouldNotBeReadBefore) {
  memory_.givenAFile(paths_.currentURLNotesFile, "");
  NotesDialog dialog(parts());
  loadInVain(dialog);
  control<QTextEdit>(dialog, "Text1").insertPlainText(QStringLiteral("tulips"));
  press(dialog, "OKButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "tulips"));
}

TEST_F(NotesDialogTest, ReplacesNothingWhileTheFileStillCannotBeRead) {
  givenNotes("roses");
  NotesDialog dialog(parts());
  loadInVain(dialog);
  control<QTextEdit>(dialog, "Text1").insertPlainText(QStringLiteral("tulips"));
  files_.failAtCall(test::FileCall::OpenForReading, 1, 75);
  messageBox_.expect("Unable to save notes. Path/file access error.", MessageBoxStyle::Critical);
  press(dialog, "OKButton");
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "roses"));
}

TEST_F(NotesDialogTest, ShowsNotesThatWereNeverReadBeforeItDeletesThem) {
  givenNotes("roses");
  NotesDialog dialog(parts());
  loadInVain(dialog);
  messageBox_.expect("Delete notes?", MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect(
      "Delete notes?", MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel, [&dialog] {
        EXPECT_EQ(control<QTextEdit>(dialog, "Text1").toPlainText(), QStringLiteral("roses"));
      });
  press(dialog, "DeleteButton");
  EXPECT_EQ(file(), notesRecord("one.two.three/a", "roses"));
  messageBox_.expect("Delete notes?", MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  press(dialog, "DeleteButton");
  EXPECT_EQ(file(), std::string(1324, ' '));
}

}  // namespace
}  // namespace quorrix
