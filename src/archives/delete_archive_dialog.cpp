#include "archives/delete_archive_dialog.h"

#include <utility>

namespace quorrix {

DeleteArchiveDialog::DeleteArchiveDialog(const ArchiveDialogParts& parts, Work deleteArchiveFiles)
    : ExistingArchiveDialog(
          parts, {.name = "DeleteArchiveDialog",
                  .caption = QStringLiteral("Delete Sites Archive"),
                  .prompt = QStringLiteral("Open the folder to delete the archive files from "
                                           "and then click OK.")}),
      deleteArchiveFiles_(std::move(deleteArchiveFiles)) {
  layOut(&File1(), QStringLiteral("Archive folder"));
}

void DeleteArchiveDialog::OKButton_Click() {
  if (!chooseFolder()) return;
  runOrUnload(FailureFamily::DeleteArchive, [this] { deleteFromFolder(); });
}

void DeleteArchiveDialog::deleteFromFolder() {
  if (!isConfirmed(aboutFolder("Delete archive '", "'?"))) return;
  bool isAnyDeleted = false;
  giveWayTo([&] { isAnyDeleted = deleteArchiveFiles_(Dir1().path(), File1().names()); });
  if (isAnyDeleted) {
    parts().messageBox.show(aboutFolder("Archive files in '", "' successfully deleted."),
                            MessageBoxStyle::Information);
  } else {
    parts().messageBox.show(
        aboutFolder("Error deleting archive '", "'. Unable to delete some archive files."),
        MessageBoxStyle::Exclamation);
  }
  accept();
}

}  // namespace quorrix
