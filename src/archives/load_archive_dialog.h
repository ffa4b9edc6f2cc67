// Load Sites Archive: replaces the display and its data by an archive.
#pragma once

#include <functional>

#include "archives/archive_folder_dialog.h"

namespace quorrix {

class LoadArchiveDialog final : public ExistingArchiveDialog {
  Q_OBJECT

 public:
  struct Work {
    // Whether the folder holds what no archive can do without; throws Failure.
    std::function<bool(const Path& folder)> holdsArchive;
    // Whether there is more in the tree than its root.
    std::function<bool()> displayHoldsSites;
    // Everything after the dialog's giving way, in the main window, too; throws Failure.
    std::function<void(const Path& folder)> load;
  };

  LoadArchiveDialog(const ArchiveDialogParts& parts, Work work);

  // Before the dialog is shown; it is shown even when this fails.
  void Form_Load() { load(FailureFamily::OpenLoadArchiveDialog); }

 private:
  void OKButton_Click() override;

  void loadFromFolder();

  Work work_;
};

}  // namespace quorrix
