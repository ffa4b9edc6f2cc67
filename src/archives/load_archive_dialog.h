// Load Sites Archive: replaces the display and its data with an archive.
#pragma once

#include <functional>

#include "archives/archive_folder_dialog.h"

namespace quorrix {

class LoadArchiveDialog final : public ExistingArchiveDialog {
  Q_OBJECT

 public:
  struct Work {
    // Whether the folder holds the file that every archive must have; throws Failure.
    std::function<bool(const Path& folder)> holdsArchive;
    // Whether the tree has more nodes than its root.
    std::function<bool()> displayHoldsSites;
    // Does everything after the dialog is hidden, including the changes in the main
    // window; throws Failure.
    std::function<void(const Path& folder)> load;
  };

  LoadArchiveDialog(const ArchiveDialogParts& parts, Work work);

  // Call before the dialog is shown. The dialog is shown even if this fails.
  void Form_Load() { load(FailureFamily::OpenLoadArchiveDialog); }

 private:
  void OKButton_Click() override;

  void loadFromFolder();

  Work work_;
};

}  // namespace quorrix
