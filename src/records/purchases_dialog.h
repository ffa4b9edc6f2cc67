// Purchases: lists the purchases recorded for the selected site and opens one
// of them for viewing or deleting. Reads purchases.dat.
#pragma once

#include "records/purchase_dates.h"
#include "records/purchases_file.h"
#include "records/record_dialog.h"

namespace quorrix {

class EntryList;

class PurchasesDialog final : public RecordDialog {
  Q_OBJECT

 public:
  explicit PurchasesDialog(const RecordDialogParts& parts);

  // Builds the list and sets `somePurchasesToLoad` to whether there is anything to show.
  // If this fails, `somePurchasesToLoad` is unchanged.
  void Form_Load(bool& somePurchasesToLoad);

 private:
  void Command1_Click();
  void CancelButton_Click();

  void fillList();
  void viewSelectedPurchase();
  void viewPurchase(int entry);
  void noteDeleted(const std::string& dateText);

  PurchasesFile purchases_;
  PurchaseDates dates_;
  EntryList* List1_;
  QPushButton* Command1_;
};

}  // namespace quorrix
