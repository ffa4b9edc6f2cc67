// New Archive: makes a folder in the one that is open here, and sends the archive
// dialog there.
#pragma once

#include "archives/archive_folder_dialog.h"

namespace quorrix {

class ArchiveDialog;

class NewArchiveDialog final : public ArchiveFolderDialog {
  Q_OBJECT

 public:
  // `archiveDialog` must outlive the dialog.
  NewArchiveDialog(const ArchiveDialogParts& parts, ArchiveDialog& archiveDialog);

  // Before the dialog is shown. When it fails, that is told, and the archive dialog's
  // newArchiveLoadedOK is false: the dialog is then not to be shown.
  void Form_Load();

 private:
  void OKButton_Click() override;

  void makeArchiveFolder();

  ArchiveDialog& archiveDialog_;
};

}  // namespace quorrix
