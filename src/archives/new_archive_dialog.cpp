#include "archives/new_archive_dialog.h"

#include <QLineEdit>

#include "archives/archive_dialog.h"
#include "archives/shown_path.h"
#include "shell/centre_over.h"
#include "shell/guarded.h"
#include "shell/pointer.h"

namespace quorrix {

NewArchiveDialog::NewArchiveDialog(const ArchiveDialogParts& parts, ArchiveDialog& archiveDialog)
    : ArchiveFolderDialog(
          parts, archiveDialog,
          {.name = "NewArchiveDialog",
           .caption = QStringLiteral("New Archive"),
           .prompt = QStringLiteral("Open the folder to make the new one in, enter its "
                                    "name and then click OK.")}),
      archiveDialog_(archiveDialog) {
  layOut(nullptr, QStringLiteral("Name of the new folder"));
  Text1().setFocus();
}

void NewArchiveDialog::Form_Load() {
  archiveDialog_.newArchiveLoadedOK = false;  // until the last step has been done
  guarded(archiveDialog_, parts().messageBox, FailureFamily::OpenNewArchiveDialog, [this] {
    centreOver(*this, archiveDialog_);
    Dir1().setPath(archiveDialog_.folder());
    Drive1().setDrive(archiveDialog_.drive());
    archiveDialog_.newArchiveLoadedOK = true;
  });
}

void NewArchiveDialog::OKButton_Click() {
  if (Text1().text().isEmpty()) {
    parts().messageBox.show("You must enter a folder name.", MessageBoxStyle::Exclamation);
    return;
  }
  if (!Dir1().openHighlighted()) return;
  guarded(*this, parts().messageBox, FailureFamily::CreateArchive, [this] { makeArchiveFolder(); });
}

void NewArchiveDialog::makeArchiveFolder() {
  const std::string question = "Create new archive folder '" + Text1().text().toStdString() +
                               "' in '" + messageTextOfPath(Dir1().path()) + "'?";
  if (!isConfirmed(question)) return;
  const Hourglass hourglass(*this);
  const Path made = parts().files.makeFolder(joinedPath(Dir1().path(), Text1().text()));
  archiveDialog_.pointAt(made, Drive1().drive());
  accept();
}

}  // namespace quorrix
