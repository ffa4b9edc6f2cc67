#include "archives/archive_windows.h"

#include "archives/archive_dialog.h"
#include "archives/archive_files.h"
#include "archives/delete_archive_dialog.h"
#include "archives/load_archive_dialog.h"
#include "shell/guarded.h"
#include "shell/pointer.h"

namespace quorrix {

template <typename Dialog>
void ArchiveWindows::show(FailureFamily family, const typename Dialog::Work& work) {
  QWidget& mainWindow = parts_.dialogs.mainWindow;
  guarded(mainWindow, parts_.dialogs.messageBox, family, [&] {
    const Hourglass hourglass(mainWindow);
    Dialog dialog(parts_.dialogs, work);
    dialog.Form_Load();
    dialog.exec();
    // The dialog hides before its work, so the keyboard focus may have gone elsewhere.
    mainWindow.activateWindow();
  });
}

void ArchiveWindows::openArchiveSites() {
  guarded(parts_.dialogs.mainWindow, parts_.dialogs.messageBox, FailureFamily::OpenArchiveSites,
          [this] {
            if (!parts_.hasSitesToArchive()) {
              parts_.dialogs.messageBox.show("No site information to archive.",
                                             MessageBoxStyle::Information);
              return;
            }
            FileSystem& files = parts_.dialogs.files;
            show<ArchiveDialog>(
                FailureFamily::OpenArchiveSites,
                {.holdsArchiveFiles =
                     [&files](const Path& folder) { return holdsArchiveFiles(files, folder); },
                 .archive = parts_.archiveTo});
          });
}

void ArchiveWindows::openLoadArchive() {
  FileSystem& files = parts_.dialogs.files;
  show<LoadArchiveDialog>(
      FailureFamily::OpenLoadArchiveDialog,
      {.holdsArchive = [&files](const Path& folder) { return canBeLoaded(files, folder); },
       .displayHoldsSites = parts_.displayHoldsSites,
       .load = parts_.loadArchive});
}

void ArchiveWindows::openDeleteArchive() {
  FileSystem& files = parts_.dialogs.files;
  show<DeleteArchiveDialog>(FailureFamily::OpenDeleteArchiveDialog,
                            [&files](const Path& folder, const std::vector<Path>& names) {
                              return deleteArchiveFiles(files, folder, names);
                            });
}

}  // namespace quorrix
