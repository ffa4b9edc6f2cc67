// Delete Sites Archive: deletes the archive files, and no others, from a folder.
#pragma once

#include <functional>
#include <vector>

#include "archives/archive_folder_dialog.h"

namespace quorrix {

class DeleteArchiveDialog final : public ExistingArchiveDialog {
  Q_OBJECT

 public:
  // Deletes from the folder those of its files, given by name in the order of the
  // file list, that belong to an archive. Whether there was any; throws Failure.
  using Work = std::function<bool(const Path& folder, const std::vector<Path>& fileNames)>;

  DeleteArchiveDialog(const ArchiveDialogParts& parts, Work deleteArchiveFiles);

  // Before the dialog is shown; it is shown even when this fails.
  void Form_Load() { load(FailureFamily::OpenDeleteArchiveDialog); }

 private:
  void OKButton_Click() override;

  void deleteFromFolder();

  Work deleteArchiveFiles_;
};

}  // namespace quorrix
