#include "records/user_id_password_dialog.h"

#include "records/record_dialog_stage.h"

namespace quorrix {
namespace {

using test::userIDPasswordRecord;

constexpr const char* kReplaceUnread =
    "There are a user ID and a password for this site, which could not be read when this window "
    "opened. Replace them?";

class UIDDialogTest : public test::RecordDialogStage {
 protected:
  // Loads a dialog while the file cannot be read. Afterwards it can be read again.
  void loadInVain(UIDDialog& dialog) {
    files_.failAtCall(test::FileCall::OpenForReading, 1, 75);
    messageBox_.expect("Unable to open User ID, Password window. Path/file access error.",
                       MessageBoxStyle::Critical);
    dialog.Form_Load();
    files_.reset();
    dialog.show();
  }

  void givenRecord(const std::string& password, const std::string& userID) {
    memory_.givenAFile(paths_.currentUserIDPasswordFile,
                       userIDPasswordRecord("one.two.three/a", password, userID));
  }
  const std::string& file() { return memory_.bytesOf(paths_.currentUserIDPasswordFile); }
};

TEST_F(UIDDialogTest, ShowsBothInClearTextCutAtABlank) {
  givenRecord("tulip 7", "anna b");
  UIDDialog dialog(parts());
  dialog.Form_Load();
  EXPECT_EQ(captionOf(dialog), "User ID, Password - one.two.three/a");
  EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text(), QStringLiteral("anna"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text2").text(), QStringLiteral("tulip"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text2").echoMode(), QLineEdit::Normal);
  EXPECT_TRUE(isEnabled(dialog, "DeleteButton"));
}

TEST_F(UIDDialogTest, HasRoomForWhatIsEntered) {
  UIDDialog dialog(parts());
  dialog.Form_Load();
  dialog.show();
  EXPECT_EQ(dialog.width(), 420);
}

TEST_F(UIDDialogTest, SavesAPasswordAlone) {
  UIDDialog dialog(parts());
  dialog.Form_Load();
  EXPECT_FALSE(isEnabled(dialog, "DeleteButton"));
  control<QLineEdit>(dialog, "Text2").insert(QStringLiteral("tulip7"));
  press(dialog, "OKButton");
  EXPECT_EQ(file(), userIDPasswordRecord("one.two.three/a", "tulip7", ""));
}

TEST_F(UIDDialogTest, ChangesNothingWhenBothBoxesWereCleared) {
  givenRecord("tulip7", "anna");
  UIDDialog dialog(parts());
  dialog.Form_Load();
  control<QLineEdit>(dialog, "Text1").clear();
  control<QLineEdit>(dialog, "Text2").clear();
  press(dialog, "OKButton");
  EXPECT_EQ(file(), userIDPasswordRecord("one.two.three/a", "tulip7", "anna"));
}

TEST_F(UIDDialogTest, Takes29Characters) {
  UIDDialog dialog(parts());
  control<QLineEdit>(dialog, "Text1").insert(QString(40, QLatin1Char('u')));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text().size(), 29);
}

TEST_F(UIDDialogTest, DeletesAfterConfirmationAndStaysOpen) {
  givenRecord("tulip7", "anna");
  UIDDialog dialog(parts());
  dialog.Form_Load();
  dialog.show();
  messageBox_.expect("Delete user ID and password?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Ok);
  press(dialog, "DeleteButton");
  EXPECT_EQ(file(), std::string(360, ' '));
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text(), QString());
  EXPECT_FALSE(isEnabled(dialog, "DeleteButton"));
}

TEST_F(UIDDialogTest, TellsOfAFieldThatCannotBeCut) {
  givenRecord(std::string(30, 'p'), "anna");
  UIDDialog dialog(parts());
  messageBox_.expect("Unable to open User ID, Password window. Unknown error.",
                     MessageBoxStyle::Critical);
  dialog.Form_Load();
  EXPECT_EQ(captionOf(dialog), "User ID, Password");
  EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text(), QStringLiteral("anna"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text2").text(), QString());
}

TEST_F(UIDDialogTest, AsksBeforeItReplacesWhatWasNeverRead) {
  givenRecord("tulip7", "anna");
  UIDDialog dialog(parts());
  loadInVain(dialog);
  control<QLineEdit>(dialog, "Text1").setText(QStringLiteral("bert"));
  messageBox_.expect(kReplaceUnread, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel);
  press(dialog, "OKButton");
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(file(), userIDPasswordRecord("one.two.three/a", "tulip7", "anna"));
  messageBox_.expect(kReplaceUnread, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  press(dialog, "OKButton");
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(file(), userIDPasswordRecord("one.two.three/a", "", "bert"));
}

TEST_F(UIDDialogTest, ShowsWhatWasNeverReadBeforeItDeletesIt) {
  givenRecord("tulip7", "anna");
  UIDDialog dialog(parts());
  loadInVain(dialog);
  constexpr const char* kQuestion = "Delete user ID and password?";
  messageBox_.expect(kQuestion, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Ok);
  messageBox_.expect(
      kQuestion, MessageBoxStyle::ConfirmQuestion, MessageBoxButton::Cancel,
      [&dialog] { EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text(), QStringLiteral("anna")); });
  press(dialog, "DeleteButton");
  EXPECT_EQ(file(), userIDPasswordRecord("one.two.three/a", "tulip7", "anna"));
}

TEST_F(UIDDialogTest, DeletesWhatWasNeverReadAfterTheSecondQuestion) {
  givenRecord("tulip7", "anna");
  UIDDialog dialog(parts());
  loadInVain(dialog);
  for (int question = 0; question < 2; ++question) {
    messageBox_.expect("Delete user ID and password?", MessageBoxStyle::ConfirmQuestion,
                       MessageBoxButton::Ok);
  }
  press(dialog, "DeleteButton");
  EXPECT_EQ(file(), std::string(360, ' '));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text(), QString());
}

TEST_F(UIDDialogTest, AsksOnceToDeleteIfThereIsNothing) {
  UIDDialog dialog(parts());
  loadInVain(dialog);
  messageBox_.expect("Delete user ID and password?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Ok);
  press(dialog, "DeleteButton");
  EXPECT_TRUE(messageBox_.isThrough());
  EXPECT_FALSE(isEnabled(dialog, "DeleteButton"));
  EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 0);
}

}  // namespace
}  // namespace quorrix
