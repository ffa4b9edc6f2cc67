// New Purchase: enters one purchase on the selected site or, opened from the
// list of purchases, shows one and deletes it. Kept in purchases.dat.
#pragma once

#include <functional>

#include "records/purchases_file.h"
#include "records/record_dialog.h"

namespace quorrix {

class MultiLineBox;

class NewPurchaseDialog final : public RecordDialog {
  Q_OBJECT

 public:
  // `onDeleted` is told the date text of a purchase that was deleted, before the
  // dialog closes; for the list that the purchase was chosen from.
  using OnDeleted = std::function<void(const std::string& dateText)>;

  explicit NewPurchaseDialog(const RecordDialogParts& parts, OnDeleted onDeleted = {});

  // Before the dialog is shown; it is shown even when this fails.
  void Form_Load();

  // Fills the boxes with the site's purchase of this date stamp, which then can
  // only be viewed or deleted. Without such a purchase the boxes stay as they
  // are and open for entering. Throws Failure.
  void getExistingRecord(const std::string& dateStamp);

 private:
  void OKButton_Click();
  void CancelButton_Click();
  void DeleteButton_Click();

  void showPurchase(const Purchase& purchase);
  [[nodiscard]] Purchase enteredPurchase() const;

  PurchasesFile purchases_;
  OnDeleted onDeleted_;
  QLineEdit* Text1_;     // item
  QLineEdit* Text2_;     // payment method
  QLineEdit* Text3_;     // price
  QLineEdit* Text4_;     // quantity
  MultiLineBox* Text5_;  // description
  QLineEdit* Text6_;     // date
  QPushButton* OKButton_;
  QPushButton* DeleteButton_;
};

}  // namespace quorrix
