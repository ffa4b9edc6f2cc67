// Opens the archive dialogs, one at a time. The main window owns this.
#pragma once

#include <functional>

#include "archives/archive_folder_dialog.h"
#include "archives/archive_operations.h"

namespace quorrix {

class ArchiveWindows {
 public:
  // All must outlive this. The functions throw Failure.
  struct Parts {
    ArchiveDialogParts dialogs;
    std::function<bool()> hasSitesToArchive;
    std::function<bool()> displayHoldsSites;
    std::function<void(const Path& folder, EarlierArchive earlier)> archiveTo;
    std::function<void(const Path& folder)> loadArchive;
  };

  explicit ArchiveWindows(Parts parts) : parts_(std::move(parts)) {}

  // Each returns when its dialog has closed. Failures are reported to the user.
  void openArchiveSites();
  void openLoadArchive();
  void openDeleteArchive();

 private:
  template <typename Dialog>
  void show(FailureFamily family, const typename Dialog::Work& work);

  Parts parts_;
};

}  // namespace quorrix
