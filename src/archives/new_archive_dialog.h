// New Archive: makes a folder in the folder that is open here, and points the archive
// dialog at it.
#pragma once

#include "archives/archive_folder_dialog.h"

namespace quorrix {

class ArchiveDialog;

class NewArchiveDialog final : public ArchiveFolderDialog {
  Q_OBJECT

 public:
  // `archiveDialog` must outlive the dialog.
  NewArchiveDialog(const ArchiveDialogParts& parts, ArchiveDialog& archiveDialog);

  // Call before the dialog is shown. If it fails, the user is told, and the archive
  // dialog's newArchiveLoadedOK is false; the dialog must then not be shown.
  void Form_Load();

 private:
  void OKButton_Click() override;

  void makeArchiveFolder();

  ArchiveDialog& archiveDialog_;
};

}  // namespace quorrix
