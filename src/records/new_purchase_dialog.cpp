#include "records/new_purchase_dialog.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "datafiles/record_layouts.h"
#include "records/multi_line_box.h"
#include "records/purchase_date_text.h"
#include "shell/centre_over.h"
#include "shell/controls.h"
#include "shell/plain_text.h"
#include "shell/pointer.h"

namespace quorrix {
namespace {

constexpr int kLinesOfDescription = 4;

// A disabled box cannot be scrolled, so the tool tip shows the text too. The text is not
// greyed out, because it can only be read.
void showForReading(QWidget& box, const QString& text) {
  QPalette palette = box.palette();
  palette.setColor(QPalette::Disabled, QPalette::Text,
                   palette.color(QPalette::Active, QPalette::Text));
  box.setPalette(palette);
  box.setToolTip(text.isEmpty() ? QString() : asToolTip(text));
  box.setEnabled(false);
}

}  // namespace

NewPurchaseDialog::NewPurchaseDialog(const RecordDialogParts& parts, OnDeleted onDeleted)
    : RecordDialog(parts, "NewPurchaseDialog", QStringLiteral("New Purchase")),
      purchases_(parts.files, parts.paths),
      onDeleted_(std::move(onDeleted)) {
  using namespace purchase_record;
  // In the order of entry, which is also the tab order.
  Text1_ = makeLineBox("Text1", QStringLiteral("Item"), kItem.width);
  Text3_ = makeLineBox("Text3", QStringLiteral("Price"), kPrice.width);
  Text4_ = makeLineBox("Text4", QStringLiteral("Quantity"), kQuantity.width);
  Text2_ = makeLineBox("Text2", QStringLiteral("Payment Method"), kPaymentMethod.width);
  Text5_ = new MultiLineBox(kDescription.width - kFieldMargin, parts.codePage, this);
  Text5_->setObjectName(QStringLiteral("Text5"));
  Text5_->setAccessibleName(QStringLiteral("Description"));
  Text5_->setFixedHeight(Text5_->fontMetrics().lineSpacing() * (kLinesOfDescription + 1));
  Text6_ = makeLineBox("Text6", QStringLiteral("Date"), kDateStamp.width);

  auto* const boxes = new QGridLayout;
  const auto addBox = [this, boxes](int row, int column, const char* label, QWidget* box,
                                    int span) {
    auto* const caption = new QLabel(QString::fromLatin1(label), this);
    caption->setBuddy(box);
    const bool isOneLine = box->sizePolicy().verticalPolicy() == QSizePolicy::Fixed;
    boxes->addWidget(caption, row, column, isOneLine ? Qt::AlignVCenter : Qt::AlignTop);
    boxes->addWidget(box, row, column + 1, 1, span);
  };
  constexpr int kWholeRow = 3;
  addBox(0, 0, "Item", Text1_, kWholeRow);
  addBox(1, 0, "Price", Text3_, 1);
  addBox(1, 2, "Quantity", Text4_, 1);
  addBox(2, 0, "Payment \nMethod", Text2_, kWholeRow);
  addBox(3, 0, "Description", Text5_, kWholeRow);
  addBox(4, 0, "Date", Text6_, kWholeRow);

  OKButton_ = makeButton("OKButton", QStringLiteral("OK"), this);
  QPushButton* const CancelButton = makeButton("CancelButton", QStringLiteral("Cancel"), this);
  DeleteButton_ = makeButton("DeleteButton", QStringLiteral("Delete"), this);
  DeleteButton_->setEnabled(false);  // until getExistingRecord(), even if the load fails
  OKButton_->setDefault(true);
  connect(OKButton_, &QPushButton::clicked, this, &NewPurchaseDialog::OKButton_Click);
  connect(CancelButton, &QPushButton::clicked, this, &NewPurchaseDialog::CancelButton_Click);
  connect(DeleteButton_, &QPushButton::clicked, this, &NewPurchaseDialog::DeleteButton_Click);

  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(makePrompt(
      QStringLiteral("Enter information about a purchase made on this website location.")));
  layout->addLayout(boxes);
  layout->addSpacing(layout->spacing());
  layout->addLayout(rowOfButtons({OKButton_, CancelButton, DeleteButton_}));
  resizeToWidth(460);
}

void NewPurchaseDialog::Form_Load() {
  runLoadGuarded(FailureFamily::OpenNewPurchase, [this] {
    centreOver(*this, parts().mainWindow);
    showSiteInCaption();
    Text6_->setText(purchaseDateText(parts().clock.now(), parts().locale, parts().codePage));
  });
}

void NewPurchaseDialog::getExistingRecord(const std::string& dateStamp) {
  DeleteButton_->setEnabled(true);
  const auto stored = purchases_.read(siteKey(), dateStamp);
  if (!stored) return;
  showPurchase(*stored);
  for (QLineEdit* const box : {Text1_, Text2_, Text3_, Text4_, Text6_}) {
    box->home(false);
    showForReading(*box, box->text());
  }
  showForReading(*Text5_, Text5_->toPlainText());
  OKButton_->setEnabled(false);
}

void NewPurchaseDialog::OKButton_Click() {
  runGuarded(FailureFamily::SavePurchase, [this] {
    const Hourglass hourglass(*this);
    purchases_.save(siteKey(), enteredPurchase());
    accept();
  });
}

void NewPurchaseDialog::CancelButton_Click() { reject(); }

void NewPurchaseDialog::DeleteButton_Click() {
  runGuarded(FailureFamily::DeletePurchase, [this] {
    if (!isConfirmed("Delete purchase information?")) return;
    const Hourglass hourglass(*this);
    const std::string dateText = fromQString(Text6_->text());
    purchases_.remove(siteKey(), dateText);
    if (onDeleted_) onDeleted_(dateText);
    accept();
  });
}

void NewPurchaseDialog::showPurchase(const Purchase& purchase) {
  Text1_->setText(toQString(purchase.item));
  Text3_->setText(toQString(purchase.price));
  Text4_->setText(toQString(purchase.quantity));
  Text2_->setText(toQString(purchase.paymentMethod));
  Text5_->showStored(purchase.description);
  Text6_->setText(toQString(purchase.dateStamp));
}

Purchase NewPurchaseDialog::enteredPurchase() const {
  return {.item = fromQString(Text1_->text()),
          .price = fromQString(Text3_->text()),
          .quantity = fromQString(Text4_->text()),
          .paymentMethod = fromQString(Text2_->text()),
          .description = Text5_->value(),
          .dateStamp = fromQString(Text6_->text())};
}

}  // namespace quorrix
