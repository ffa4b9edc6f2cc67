// New Purchase: enters one purchase for the selected site. Opened from the list of
// purchases, it shows one purchase and can delete it. Purchases are kept in
// purchases.dat.
#pragma once

#include <functional>

#include "records/purchases_file.h"
#include "records/record_dialog.h"

namespace quorrix {

class MultiLineBox;

class NewPurchaseDialog final : public RecordDialog {
  Q_OBJECT

 public:
  // `onDeleted` is called with the date text of a deleted purchase before the dialog
  // closes, so that the list it was chosen from can be updated.
  using OnDeleted = std::function<void(const std::string& dateText)>;

  explicit NewPurchaseDialog(const RecordDialogParts& parts, OnDeleted onDeleted = {});

  // Call before the dialog is shown. The dialog is shown even if this fails.
  void Form_Load();

  // Fills the boxes with the site's purchase that has this date stamp; the purchase can
  // then only be viewed or deleted. If there is no such purchase, the boxes stay
  // unchanged and editable. Throws Failure.
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
