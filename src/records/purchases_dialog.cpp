#include "records/purchases_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "records/new_purchase_dialog.h"
#include "shell/centre_over.h"
#include "shell/controls.h"
#include "shell/entry_list.h"
#include "shell/plain_text.h"
#include "shell/pointer.h"

namespace quorrix {

PurchasesDialog::PurchasesDialog(const RecordDialogParts& parts)
    : RecordDialog(parts, "PurchasesDialog", QStringLiteral("Purchases")),
      purchases_(parts.files, parts.paths) {
  List1_ = new EntryList(this);
  List1_->setObjectName(QStringLiteral("List1"));
  List1_->setAccessibleName(QStringLiteral("Purchases"));
  Command1_ = makeButton("Command1", QStringLiteral("OK"), this);
  QPushButton* const CancelButton = makeButton("CancelButton", QStringLiteral("Cancel"), this);
  Command1_->setDefault(true);
  connect(Command1_, &QPushButton::clicked, this, &PurchasesDialog::Command1_Click);
  connect(List1_, &QListWidget::itemDoubleClicked, this, &PurchasesDialog::Command1_Click);
  connect(CancelButton, &QPushButton::clicked, this, &PurchasesDialog::CancelButton_Click);

  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(
      makePrompt(QStringLiteral("To view a purchase information record for this web location, "
                                "select an item from the list, then click OK.")));
  layout->addWidget(List1_);
  layout->addLayout(rowOfButtons({Command1_, CancelButton}));
  resize(440, 320);
}

void PurchasesDialog::Form_Load(bool& somePurchasesToLoad) {
  runLoadGuarded(FailureFamily::OpenPurchases, [this, &somePurchasesToLoad] {
    centreOver(*this, parts().mainWindow);
    showSiteInCaption();
    fillList();
    somePurchasesToLoad = List1_->count() > 0;
    if (somePurchasesToLoad) return;
    parts().messageBox.show("No purchase information recorded for this web location.",
                            MessageBoxStyle::Information);
  });
}

void PurchasesDialog::fillList() {
  purchases_.list(siteKey(), [this](const PurchaseSummary& purchase) {
    const auto slot = static_cast<std::size_t>(List1_->count());
    List1_->addItem(toQString(purchase.item + ' ' + purchase.price + ' ' + purchase.dateStamp));
    dates_.set(slot, purchase.dateStamp);
  });
}

void PurchasesDialog::Command1_Click() {
  try {
    viewSelectedPurchase();
  } catch (...) {
    // The purchase is not opened. No message is shown.
  }
}

void PurchasesDialog::viewSelectedPurchase() {
  const int entry = List1_->selectedRow();
  if (entry < 0) {
    parts().messageBox.show("You must select an item from the list.", MessageBoxStyle::Exclamation);
    return;
  }
  const Hourglass hourglass(*this);
  viewPurchase(entry);
}

void PurchasesDialog::CancelButton_Click() { reject(); }

void PurchasesDialog::viewPurchase(int entry) {
  NewPurchaseDialog dialog(parts(), [this](const std::string& dateText) { noteDeleted(dateText); });
  dialog.setParent(this, dialog.windowFlags());  // so that it stays above the list
  dialog.Form_Load();
  dialog.getExistingRecord(dates_.at(static_cast<std::size_t>(entry)));
  dialog.exec();
}

void PurchasesDialog::noteDeleted(const std::string& dateText) {
  delete List1_->takeItem(List1_->selectedRow());
  List1_->clearSelection();
  dates_.deleteDeletedRecordDateFromDatesArray(dateText);
  Command1_->setEnabled(List1_->count() > 0);
}

}  // namespace quorrix
