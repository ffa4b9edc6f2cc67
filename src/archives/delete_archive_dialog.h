// Delete Sites Archive: deletes the archive files, and no others, from a folder.
#pragma once

#include <functional>
#include <vector>

#include "archives/archive_folder_dialog.h"

namespace quorrix {

class DeleteArchiveDialog final : public ExistingArchiveDialog {
  Q_OBJECT

 public:
  // Deletes from the folder the files that belong to an archive. `fileNames` has the
  // names of all its files, in the order of the file list. Returns whether there was any
  // to delete; throws Failure.
  using Work = std::function<bool(const Path& folder, const std::vector<Path>& fileNames)>;

  DeleteArchiveDialog(const ArchiveDialogParts& parts, Work deleteArchiveFiles);

  // Call before the dialog is shown. The dialog is shown even if this fails.
  void Form_Load() { load(FailureFamily::OpenDeleteArchiveDialog); }

 private:
  void OKButton_Click() override;

  void deleteFromFolder();

  Work deleteArchiveFiles_;
};

}  // namespace quorrix
