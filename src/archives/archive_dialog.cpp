#include "archives/archive_dialog.h"

#include <QPushButton>
#include <utility>

#include "archives/new_archive_dialog.h"
#include "shell/controls.h"
#include "shell/guarded.h"
#include "shell/pointer.h"

namespace quorrix {
namespace {

constexpr std::string_view kArchiveAnyway =
    "The selected folder contains Quorrix archive files. They will be overwritten if you "
    "continue. Archive anyway?";

}  // namespace

ArchiveDialog::ArchiveDialog(const ArchiveDialogParts& parts, Work work)
    : ExistingArchiveDialog(
          parts, {.name = "ArchiveDialog",
                  .caption = QStringLiteral("Archive Sites"),
                  .prompt = QStringLiteral("Open the folder to archive the current display and its "
                                           "data to, or make a new one, and then click OK.")}),
      work_(std::move(work)) {
  QPushButton* const NewButton = makeButton("NewButton", QStringLiteral("New"), this);
  connect(NewButton, &QPushButton::clicked, this, &ArchiveDialog::NewButton_Click);
  connect(&Dir1(), &QListWidget::itemClicked, this, &ArchiveDialog::Dir1_Click);
  layOut(&File1(), QStringLiteral("Archive folder"), NewButton);
}

void ArchiveDialog::pointAt(const Path& folder, const Path& drive) {
  Dir1().setPath(folder);
  Drive1().setDrive(drive);
  showInBox(folder);
}

void ArchiveDialog::Dir1_Click() {
  guarded(*this, parts().messageBox, FailureFamily::OtherCommand,
          [this] { showInBox(Dir1().path()); });
}

void ArchiveDialog::OKButton_Click() {
  if (!chooseFolder()) return;
  runOrUnload(FailureFamily::ArchiveSites, [this] { archiveIntoFolder(); });
}

void ArchiveDialog::archiveIntoFolder() {
  if (!isConfirmed(aboutFolder("Archive current display and associated data to '", "'?"))) return;
  auto earlier = EarlierArchive::None;
  if (work_.holdsArchiveFiles(folder())) {
    if (!isConfirmed(kArchiveAnyway, MessageBoxStyle::ConfirmWarning)) return;
    earlier = EarlierArchive::Delete;
  }
  giveWayTo([this, earlier] { work_.archive(folder(), earlier); });
  parts().messageBox.show(aboutFolder("Data successfully archived to '", "'."),
                          MessageBoxStyle::Information);
  accept();
}

void ArchiveDialog::NewButton_Click() {
  guarded(*this, parts().messageBox, FailureFamily::OpenNewArchiveDialog, [this] {
    const Hourglass hourglass(*this);
    NewArchiveDialog dialog(parts(), *this);
    dialog.Form_Load();
    const bool isMade = newArchiveLoadedOK && dialog.exec() == QDialog::Accepted;
    if (isMade) OKButton().setFocus();  // the next step
    // Takes the focus back. When the question and New Archive close together, it goes to
    // another window.
    activateWindow();
  });
}

}  // namespace quorrix
