// Archive Sites: moves the display and its data into a folder that the user chooses or
// creates with New Archive.
#pragma once

#include <functional>

#include "archives/archive_folder_dialog.h"
#include "archives/archive_operations.h"

namespace quorrix {

class ArchiveDialog final : public ExistingArchiveDialog {
  Q_OBJECT

 public:
  struct Work {
    // Whether the folder holds files that archiving would overwrite; throws Failure.
    std::function<bool(const Path& folder)> holdsArchiveFiles;
    // Does everything between hiding the dialog and the success message, including the
    // changes in the main window; throws Failure.
    std::function<void(const Path& folder, EarlierArchive earlier)> archive;
  };

  ArchiveDialog(const ArchiveDialogParts& parts, Work work);

  // Call before the dialog is shown. The dialog is shown even if this fails.
  void Form_Load() { load(FailureFamily::OpenArchiveDialog); }

  // For New Archive, which opens at this dialog's folder and drive and then points this
  // dialog at the new folder.
  [[nodiscard]] const Path& folder() const { return Dir1().path(); }
  [[nodiscard]] const Path& drive() const { return Drive1().drive(); }
  void pointAt(const Path& folder, const Path& drive);  // throws Failure

  // Whether New Archive opened without a failure.
  bool newArchiveLoadedOK = false;

 private:
  void Dir1_Click();
  void OKButton_Click() override;
  void NewButton_Click();

  void archiveIntoFolder();

  Work work_;
};

}  // namespace quorrix
