#include "records/user_id_password_dialog.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "datafiles/record_layouts.h"
#include "shell/centre_over.h"
#include "shell/controls.h"
#include "shell/plain_text.h"
#include "shell/pointer.h"

namespace quorrix {
namespace {

constexpr std::string_view kDelete = "Delete user ID and password?";
constexpr std::string_view kReplaceUnread =
    "There are a user ID and a password for this site, which could not be read when this window "
    "opened. Replace them?";

}  // namespace

UIDDialog::UIDDialog(const RecordDialogParts& parts)
    : RecordDialog(parts, "UIDDialog", QStringLiteral("User ID, Password")),
      records_(parts.files, parts.paths) {
  using namespace user_id_password_record;
  Text1_ = makeLineBox("Text1", QStringLiteral("User ID"), kUserID.width);
  Text2_ = makeLineBox("Text2", QStringLiteral("Password"), kPassword.width);
  auto* const boxes = new QFormLayout;
  boxes->addRow(QStringLiteral("User ID"), Text1_);
  boxes->addRow(QStringLiteral("Password"), Text2_);

  QPushButton* const OKButton = makeButton("OKButton", QStringLiteral("OK"), this);
  QPushButton* const CancelButton = makeButton("CancelButton", QStringLiteral("Cancel"), this);
  DeleteButton_ = makeButton("DeleteButton", QStringLiteral("Delete"), this);
  OKButton->setDefault(true);
  connect(OKButton, &QPushButton::clicked, this, &UIDDialog::OKButton_Click);
  connect(CancelButton, &QPushButton::clicked, this, &UIDDialog::CancelButton_Click);
  connect(DeleteButton_, &QPushButton::clicked, this, &UIDDialog::DeleteButton_Click);

  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(
      makePrompt(QStringLiteral("Enter your user ID and password for this website location.")));
  layout->addLayout(boxes);
  layout->addSpacing(layout->spacing());
  layout->addStretch();
  layout->addLayout(rowOfButtons({OKButton, CancelButton, DeleteButton_}));
  resizeToWidth(420);
}

void UIDDialog::Form_Load() {
  runLoadGuarded(FailureFamily::OpenUserIDPassword, [this] {
    centreOver(*this, parts().mainWindow);
    DeleteButton_->setEnabled(readStored());
    showSiteInCaption();
  });
}

bool UIDDialog::readStored() {
  const auto stored = records_.read(siteKey());
  if (stored) {
    Text1_->setText(toQString(stored->userID()));
    Text2_->setText(toQString(stored->password()));
  }
  isRead_ = true;
  return stored.has_value();
}

void UIDDialog::OKButton_Click() {
  runGuarded(FailureFamily::SaveUserIDPassword, [this] {
    const Hourglass hourglass(*this);
    const UserIDPassword entered{.userID = fromQString(Text1_->text()),
                                 .password = fromQString(Text2_->text())};
    if (!entered.userID.empty() || !entered.password.empty()) {
      if (!isRead_ && records_.read(siteKey()) && !isConfirmed(kReplaceUnread)) return;
      records_.save(siteKey(), entered);
    }
    accept();
  });
}

void UIDDialog::CancelButton_Click() { reject(); }

void UIDDialog::DeleteButton_Click() {
  runGuarded(FailureFamily::DeleteUserIDPassword, [this] {
    if (!isConfirmed(kDelete)) return;
    const Hourglass hourglass(*this);
    // If the file could not be read before, show what is about to be deleted and ask
    // again.
    if (!isRead_ && readStored() && !isConfirmed(kDelete)) return;
    records_.remove(siteKey());
    Text1_->clear();
    Text2_->clear();
    DeleteButton_->setEnabled(false);
  });
}

}  // namespace quorrix
