#include <QListWidget>
#include <QTimer>

#include "records/new_purchase_dialog.h"
#include "records/purchases_dialog.h"
#include "records/record_dialog_stage.h"

namespace quorrix {
namespace {

using test::purchaseRecord;

class PurchaseDialogsTest : public test::RecordDialogStage {
 protected:
  void givenPurchases(const std::string& bytes) {
    memory_.givenAFile(paths_.currentPurchasesFile, bytes);
  }
  const std::string& file() { return memory_.bytesOf(paths_.currentPurchasesFile); }

  // Presses a button of the purchase dialog that the list is about to open.
  void whenThePurchaseOpensPress(const char* button) {
    QTimer::singleShot(0, &mainWindow_, [button] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      EXPECT_FALSE(isEnabled(*dialog, "OKButton"));
      EXPECT_FALSE(isEnabled(*dialog, "Text1"));
      press(*dialog, button);
      dialog->reject();
    });
  }
};

TEST_F(PurchaseDialogsTest, EnterANewPurchaseUnderThePresentDate) {
  NewPurchaseDialog dialog(parts());
  dialog.Form_Load();
  EXPECT_EQ(captionOf(dialog), "New Purchase - one.two.three/a");
  EXPECT_FALSE(isEnabled(dialog, "DeleteButton"));
  control<QLineEdit>(dialog, "Text1").insert(QStringLiteral("lamp"));
  control<QLineEdit>(dialog, "Text3").insert(QStringLiteral("9.95"));
  control<QLineEdit>(dialog, "Text4").insert(QStringLiteral("1"));
  control<QLineEdit>(dialog, "Text2").insert(QStringLiteral("card"));
  control<QTextEdit>(dialog, "Text5").insertPlainText(QStringLiteral("brass\nold"));
  press(dialog, "OKButton");
  EXPECT_EQ(file(), purchaseRecord("one.two.three/a", {.dateStamp = "1/2/26 3:04:05 PM~",
                                                       .price = "9.95~",
                                                       .paymentMethod = "card~",
                                                       .item = "lamp~",
                                                       .description = "brass\r\nold~",
                                                       .quantity = "1~"}));
}

TEST_F(PurchaseDialogsTest, EndEveryRowOfBoxesAtOneEdge) {
  NewPurchaseDialog dialog(parts());
  dialog.show();
  const int edge = control<QWidget>(dialog, "Text1").geometry().right();
  for (const char* const last : {"Text4", "Text2", "Text5", "Text6"}) {
    EXPECT_EQ(control<QWidget>(dialog, last).geometry().right(), edge) << last;
  }
}

TEST_F(PurchaseDialogsTest, HaveRoomForFourLinesOfADescription) {
  NewPurchaseDialog dialog(parts());
  dialog.show();
  auto& box = control<QTextEdit>(dialog, "Text5");
  EXPECT_GE(box.viewport()->height(), 4 * box.fontMetrics().lineSpacing());
}

TEST_F(PurchaseDialogsTest, ShowAPurchaseAsItIsStored) {
  givenPurchases(purchaseRecord("one.two.three/a", {.dateStamp = "1/2/26 3:04:05 PM~",
                                                    .price = "9.95~",
                                                    .paymentMethod = "card~",
                                                    .item = "lamp~",
                                                    .description = "brass\r\nold~",
                                                    .quantity = "1~"}));
  NewPurchaseDialog dialog(parts());
  dialog.Form_Load();
  dialog.getExistingRecord("1/2/26 3:04:05 PM");
  EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text(), QStringLiteral("lamp"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text3").text(), QStringLiteral("9.95"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text4").text(), QStringLiteral("1"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text2").text(), QStringLiteral("card"));
  EXPECT_EQ(control<QTextEdit>(dialog, "Text5").toPlainText(), QStringLiteral("brass\nold"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text6").text(), QStringLiteral("1/2/26 3:04:05 PM"));
}

TEST_F(PurchaseDialogsTest, LeaveTheBoxesOpenWhenThePurchaseIsGone) {
  NewPurchaseDialog dialog(parts());
  dialog.Form_Load();
  dialog.getExistingRecord("1/1/26 1:00:00 AM");
  EXPECT_TRUE(isEnabled(dialog, "Text1"));
  EXPECT_TRUE(isEnabled(dialog, "OKButton"));
  EXPECT_TRUE(isEnabled(dialog, "DeleteButton"));
  EXPECT_EQ(control<QLineEdit>(dialog, "Text1").text(), QString());
  EXPECT_EQ(control<QLineEdit>(dialog, "Text6").text(), QStringLiteral("1/2/26 3:04:05 PM"));
  messageBox_.expect("Delete purchase information?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Ok);
  press(dialog, "DeleteButton");
  EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 0);
}

TEST_F(PurchaseDialogsTest, LetAPurchaseThatIsTooLongForItsBoxesBeRead) {
  test::PurchaseFields fields;
  fields.paymentMethod.assign(49, 'W').append("~");
  fields.description = "<b>1</b>\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7~";
  givenPurchases(purchaseRecord("one.two.three/a", fields));
  NewPurchaseDialog dialog(parts());
  dialog.Form_Load();
  dialog.getExistingRecord("1/2/26 3:04:05 PM");
  EXPECT_EQ(control<QLineEdit>(dialog, "Text2").cursorPosition(), 0);
  EXPECT_EQ(control<QTextEdit>(dialog, "Text5").toolTip(),
            QStringLiteral("<p style='white-space:pre'>&lt;b&gt;1&lt;/b&gt;"
                           "\n2\n3\n4\n5\n6\n7</p>"));
}

TEST_F(PurchaseDialogsTest, OpenAndDeleteAPurchaseWhoseTextsHaveLostTheirTildes) {
  givenPurchases(purchaseRecord("one.two.three/a", {.price = std::string(12, '9'),
                                                    .paymentMethod = std::string(50, 'p'),
                                                    .item = std::string(50, 'i'),
                                                    .description = std::string(100, 'd'),
                                                    .quantity = "12345"}));
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  auto& list = control<QListWidget>(dialog, "List1");
  ASSERT_EQ(list.count(), 1);
  EXPECT_EQ(list.item(0)->text(),
            QString(50, QLatin1Char('i')) + QStringLiteral(" 999999999999 1/2/26 3:04:05 PM"));
  list.setCurrentRow(0);
  messageBox_.expect("Delete purchase information?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Ok);
  QString description;
  QTimer::singleShot(0, &mainWindow_, [&description] {
    auto* const purchase = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(purchase, nullptr);
    description = control<QTextEdit>(*purchase, "Text5").toPlainText();
    press(*purchase, "DeleteButton");
    purchase->reject();
  });
  press(dialog, "Command1");
  EXPECT_EQ(description, QString(100, QLatin1Char('d')));
  EXPECT_EQ(file(), std::string(542, ' '));
}

TEST_F(PurchaseDialogsTest, SaveEmptyBoxesAndTildesAsTheyAre) {
  NewPurchaseDialog dialog(parts());
  dialog.Form_Load();
  control<QLineEdit>(dialog, "Text6").clear();
  press(dialog, "OKButton");
  NewPurchaseDialog second(parts());
  second.Form_Load();
  control<QLineEdit>(second, "Text6").clear();
  control<QLineEdit>(second, "Text1").insert(QStringLiteral("a~b"));
  press(second, "OKButton");
  const test::PurchaseFields empty{.dateStamp = "~",
                                   .price = "~",
                                   .paymentMethod = "~",
                                   .item = "~",
                                   .description = "~",
                                   .quantity = "~"};
  test::PurchaseFields withTilde = empty;
  withTilde.item = "a~b~";
  EXPECT_EQ(file(), purchaseRecord("one.two.three/a", empty) +
                        purchaseRecord("one.two.three/a", withTilde));
}

TEST_F(PurchaseDialogsTest, DeleteTheFirstOfTwoInOneSecondAndTheEntryChosen) {
  givenPurchases(purchaseRecord("one.two.three/a", {.item = "first~"}) +
                 purchaseRecord("one.two.three/a", {.item = "second~"}));
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  auto& list = control<QListWidget>(dialog, "List1");
  list.setCurrentRow(1);
  messageBox_.expect("Delete purchase information?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Ok);
  whenThePurchaseOpensPress("DeleteButton");
  press(dialog, "Command1");
  ASSERT_EQ(list.count(), 1);
  EXPECT_EQ(list.item(0)->text(), QStringLiteral("first 9.95 1/2/26 3:04:05 PM"));
  EXPECT_EQ(file(), std::string(542, ' ') + purchaseRecord("one.two.three/a", {.item = "second~"}));
}

TEST_F(PurchaseDialogsTest, SayThatThereIsNothingToList) {
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = true;
  messageBox_.expect("No purchase information recorded for this web location.",
                     MessageBoxStyle::Information);
  dialog.Form_Load(somePurchasesToLoad);
  EXPECT_FALSE(somePurchasesToLoad);
}

TEST_F(PurchaseDialogsTest, ListItemPriceAndDateInFileOrder) {
  givenPurchases(purchaseRecord("one.two.three/a", {.price = "~", .item = "lamp~"}) +
                 purchaseRecord("a.b.c") + purchaseRecord("one.two.three/a", {.item = "rug~"}));
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  EXPECT_TRUE(somePurchasesToLoad);
  EXPECT_EQ(captionOf(dialog), "Purchases - one.two.three/a");
  auto& list = control<QListWidget>(dialog, "List1");
  ASSERT_EQ(list.count(), 2);
  EXPECT_EQ(list.item(0)->text(), QStringLiteral("lamp  1/2/26 3:04:05 PM"));
  EXPECT_EQ(list.item(1)->text(), QStringLiteral("rug 9.95 1/2/26 3:04:05 PM"));
}

TEST_F(PurchaseDialogsTest, WrapThePromptOverTheList) {
  PurchasesDialog dialog(parts());
  dialog.show();
  EXPECT_EQ(dialog.width(), 440);
}

TEST_F(PurchaseDialogsTest, OpenTheItemByEnter) {
  PurchasesDialog dialog(parts());
  EXPECT_TRUE(control<QPushButton>(dialog, "Command1").isDefault());
}

TEST_F(PurchaseDialogsTest, WantAnItemSelected) {
  givenPurchases(purchaseRecord("one.two.three/a"));
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  messageBox_.expect("You must select an item from the list.", MessageBoxStyle::Exclamation);
  press(dialog, "Command1");
}

TEST_F(PurchaseDialogsTest, CloseTheListOnCancelAndOpenNothing) {
  givenPurchases(purchaseRecord("one.two.three/a"));
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  control<QListWidget>(dialog, "List1").setCurrentRow(0);
  dialog.show();
  press(dialog, "CancelButton");
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

TEST_F(PurchaseDialogsTest, DeleteAPurchaseAndKeepTheListInStep) {
  givenPurchases(purchaseRecord("one.two.three/a", {.dateStamp = "1~"}) +
                 purchaseRecord("one.two.three/a", {.dateStamp = "2~"}));
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  auto& list = control<QListWidget>(dialog, "List1");
  for (const int left : {1, 0}) {
    list.setCurrentRow(0);
    messageBox_.expect("Delete purchase information?", MessageBoxStyle::ConfirmQuestion,
                       MessageBoxButton::Ok);
    whenThePurchaseOpensPress("DeleteButton");
    press(dialog, "Command1");
    EXPECT_EQ(list.count(), left);
    EXPECT_EQ(isEnabled(dialog, "Command1"), left > 0);
  }
  EXPECT_EQ(file(), std::string(1084, ' '));
}

TEST_F(PurchaseDialogsTest, FallOutOfStepWhenTwoPurchasesHaveOneDate) {
  const std::string last = purchaseRecord("one.two.three/a", {.dateStamp = "2~"});
  givenPurchases(purchaseRecord("one.two.three/a", {.dateStamp = "1~"}) +
                 purchaseRecord("one.two.three/a", {.dateStamp = "1~"}) + last);
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  auto& list = control<QListWidget>(dialog, "List1");
  list.setCurrentRow(0);
  messageBox_.expect("Delete purchase information?", MessageBoxStyle::ConfirmQuestion,
                     MessageBoxButton::Ok);
  whenThePurchaseOpensPress("DeleteButton");
  press(dialog, "Command1");
  ASSERT_EQ(list.count(), 2);
  // Both dates have been removed, so the first row now opens the purchase of the second
  // one.
  list.setCurrentRow(0);
  QString shown;
  QTimer::singleShot(0, &mainWindow_, [&shown] {
    auto* const purchase = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(purchase, nullptr);
    shown = control<QLineEdit>(*purchase, "Text6").text();
    purchase->reject();
  });
  press(dialog, "Command1");
  EXPECT_EQ(shown, QStringLiteral("2"));
}

TEST_F(PurchaseDialogsTest, FailAtThe502ndPurchaseOfASite) {
  std::string bytes;
  for (int i = 0; i < 502; ++i) bytes += purchaseRecord("one.two.three/a");
  givenPurchases(bytes);
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  messageBox_.expect("Unable to open Purchases window. Unknown error.", MessageBoxStyle::Critical);
  dialog.Form_Load(somePurchasesToLoad);
  EXPECT_FALSE(somePurchasesToLoad);
  EXPECT_EQ(control<QListWidget>(dialog, "List1").count(), 502);
}

TEST_F(PurchaseDialogsTest, ListTheLastPurchaseThatHasRoom) {
  std::string bytes;
  for (int i = 0; i < 501; ++i) bytes += purchaseRecord("one.two.three/a");
  givenPurchases(bytes);
  PurchasesDialog dialog(parts());
  bool somePurchasesToLoad = false;
  dialog.Form_Load(somePurchasesToLoad);
  EXPECT_TRUE(somePurchasesToLoad);
}

}  // namespace
}  // namespace quorrix
