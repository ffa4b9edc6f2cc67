#include "records/notes_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "datafiles/record_layouts.h"
#include "records/multi_line_box.h"
#include "shell/centre_over.h"
#include "shell/controls.h"
#include "shell/pointer.h"

namespace quorrix {
namespace {

constexpr std::string_view kDelete = "Delete notes?";
constexpr std::string_view kReplaceUnread =
    "There are notes for this site, which could not be read when this window opened. Replace them?";

}  // namespace

NotesDialog::NotesDialog(const RecordDialogParts& parts)
    : RecordDialog(parts, "NotesDialog", QStringLiteral("Notes")),
      notes_(parts.files, parts.paths) {
  QLabel* const prompt = makePrompt(QStringLiteral("Enter notes for this website location."));
  Text1_ = new MultiLineBox(notes_record::kNotesText.width - kFieldMargin, parts.codePage, this);
  Text1_->setObjectName(QStringLiteral("Text1"));
  Text1_->setAccessibleName(QStringLiteral("Notes"));
  prompt->setBuddy(Text1_);
  QPushButton* const OKButton = makeButton("OKButton", QStringLiteral("OK"), this);
  QPushButton* const CancelButton = makeButton("CancelButton", QStringLiteral("Cancel"), this);
  DeleteButton_ = makeButton("DeleteButton", QStringLiteral("Delete"), this);
  OKButton->setDefault(true);
  connect(OKButton, &QPushButton::clicked, this, &NotesDialog::OKButton_Click);
  connect(CancelButton, &QPushButton::clicked, this, &NotesDialog::CancelButton_Click);
  connect(DeleteButton_, &QPushButton::clicked, this, &NotesDialog::DeleteButton_Click);

  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(prompt);
  layout->addWidget(Text1_);
  layout->addLayout(rowOfButtons({OKButton, CancelButton, DeleteButton_}));
  resize(440, 320);
}

void NotesDialog::Form_Load() {
  runLoadGuarded(FailureFamily::OpenNotes, [this] {
    centreOver(*this, parts().mainWindow);
    readStored();
    Text1_->moveCursor(QTextCursor::End);  // people add to their notes
    DeleteButton_->setEnabled(!Text1_->value().empty());
    showSiteInCaption();
  });
}

bool NotesDialog::readStored() {
  auto stored = notes_.read(siteKey());
  isRead_ = true;
  if (!stored) return false;
  Text1_->showStored(std::move(*stored));
  return true;
}

void NotesDialog::OKButton_Click() {
  runGuarded(FailureFamily::SaveNotes, [this] {
    const Hourglass hourglass(*this);
    const std::string entered = Text1_->value();
    if (!entered.empty()) {
      if (!isRead_ && notes_.read(siteKey()) && !isConfirmed(kReplaceUnread)) return;
      notes_.save(siteKey(), entered);
    }
    accept();
  });
}

void NotesDialog::CancelButton_Click() { reject(); }

void NotesDialog::DeleteButton_Click() {
  runGuarded(FailureFamily::DeleteNotes, [this] {
    if (!isConfirmed(kDelete)) return;
    const Hourglass hourglass(*this);
    // If the file could not be read before, show what is about to be deleted and ask
    // again.
    if (!isRead_ && readStored() && !isConfirmed(kDelete)) return;
    notes_.remove(siteKey());
    Text1_->showStored({});
    DeleteButton_->setEnabled(false);
  });
}

}  // namespace quorrix
