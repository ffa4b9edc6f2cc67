// What holds for every record dialog: it shows the hourglass while it works, its boxes
// limit their text, and Cancel writes nothing.
#include "records/record_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <map>

#include "records/new_purchase_dialog.h"
#include "records/notes_dialog.h"
#include "records/record_dialog_stage.h"
#include "records/user_id_password_dialog.h"

namespace quorrix {
namespace {

class RecordDialogTest : public test::RecordDialogStage {
 protected:
  // From now on, records in hadHourglass_ whether the dialog shows the hourglass at every
  // file call.
  void watchPointerOf(QDialog& dialog) {
    files_.reset();
    hadHourglass_ = true;
    files_.onEveryCall([this, &dialog] {
      hadHourglass_ = hadHourglass_ && dialog.cursor().shape() == Qt::WaitCursor;
    });
  }

  template <typename Dialog>
  void expectHourglassOn(const char* button, const char* box, const char* question) {
    Dialog dialog(parts());
    dialog.Form_Load();
    if (box != nullptr) QTest::keyClicks(&control<QWidget>(dialog, box), QStringLiteral("x"));
    control<QPushButton>(dialog, button).setEnabled(true);
    if (question != nullptr) messageBox_.expect(question, MessageBoxStyle::ConfirmQuestion);
    watchPointerOf(dialog);
    press(dialog, button);
    EXPECT_GE(files_.calls().size(), 2U);
    EXPECT_TRUE(hadHourglass_);
    EXPECT_EQ(dialog.cursor().shape(), Qt::ArrowCursor);
    files_.onEveryCall({});
  }

  template <typename Dialog>
  void expectLimits(const std::map<const char*, int>& limits) {
    Dialog dialog(parts());
    dialog.Form_Load();
    for (const auto& [name, limit] : limits) {
      auto& box = control<QWidget>(dialog, name);
      if (auto* const line = qobject_cast<QLineEdit*>(&box)) {
        line->clear();
        line->insert(QString(1100, QLatin1Char('x')));
        EXPECT_EQ(line->text().size(), limit) << name;
      } else {
        auto& text = control<QTextEdit>(dialog, name);
        QApplication::clipboard()->setText(QString(1100, QLatin1Char('x')));
        text.paste();
        EXPECT_EQ(text.toPlainText().size(), limit) << name;
      }
    }
  }

  bool hadHourglass_ = false;
};

TEST_F(RecordDialogTest, HasTheHourglassWhileItSaves) {
  expectHourglassOn<NotesDialog>("OKButton", "Text1", nullptr);
  expectHourglassOn<UIDDialog>("OKButton", "Text1", nullptr);
  expectHourglassOn<NewPurchaseDialog>("OKButton", nullptr, nullptr);
}

TEST_F(RecordDialogTest, HasTheHourglassWhileItDeletes) {
  expectHourglassOn<NotesDialog>("DeleteButton", nullptr, "Delete notes?");
  expectHourglassOn<UIDDialog>("DeleteButton", nullptr, "Delete user ID and password?");
  expectHourglassOn<NewPurchaseDialog>("DeleteButton", nullptr, "Delete purchase information?");
}

TEST_F(RecordDialogTest, TakesOneCharacterLessThanEachFieldHas) {
  expectLimits<NotesDialog>({{"Text1", 1023}});
  expectLimits<UIDDialog>({{"Text1", 29}, {"Text2", 29}});
  expectLimits<NewPurchaseDialog>(
      {{"Text1", 49}, {"Text3", 11}, {"Text4", 4}, {"Text2", 49}, {"Text5", 99}, {"Text6", 24}});
}

template <typename Dialog>
void cancelAfterTyping(Dialog& dialog, const char* box) {
  dialog.Form_Load();
  dialog.show();
  QTest::keyClicks(dialog.template findChild<QWidget*>(QString::fromLatin1(box)),
                   QStringLiteral("x"));
  dialog.template findChild<QPushButton*>(QStringLiteral("CancelButton"))->click();
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(RecordDialogTest, WritesNothingOnCancel) {
  NotesDialog notes(parts());
  cancelAfterTyping(notes, "Text1");
  UIDDialog userID(parts());
  cancelAfterTyping(userID, "Text1");
  NewPurchaseDialog purchase(parts());
  cancelAfterTyping(purchase, "Text1");
  EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 0);
}

TEST_F(RecordDialogTest, DeletesNothingWithoutConfirmation) {
  memory_.givenAFile(paths_.currentUserIDPasswordFile,
                     test::userIDPasswordRecord("one.two.three/a", "p", "u"));
  memory_.givenAFile(paths_.currentPurchasesFile, test::purchaseRecord("one.two.three/a"));
  UIDDialog userID(parts());
  userID.Form_Load();
  messageBox_.expect("Delete user ID and password?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Cancel);
  press(userID, "DeleteButton");
  NewPurchaseDialog purchase(parts());
  purchase.Form_Load();
  purchase.getExistingRecord("1/2/26 3:04:05 PM");
  messageBox_.expect("Delete purchase information?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Cancel);
  press(purchase, "DeleteButton");
  EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 0);
  EXPECT_EQ(control<QLineEdit>(userID, "Text1").text(), QStringLiteral("u"));
}

}  // namespace
}  // namespace quorrix
