// The archive commands of the main window: what their dialogs have it do to the
// display, in between what is done to the files.

#include <QStringBuilder>

#include "archives/archive_dialog.h"
#include "archives/archive_files.h"
#include "archives/archive_operations.h"
#include "archives/delete_archive_dialog.h"
#include "archives/last_archive.h"
#include "archives/load_archive_dialog.h"
#include "archives/shown_path.h"
#include "main_window/main_form.h"
#include "shell/guarded.h"
#include "shell/pointer.h"

namespace quorrix {

ArchiveDialogParts MainForm::archiveDialogParts() {
  return {.files = parts_.files,
          .messageBox = parts_.messageBox,
          .mainWindow = *this,
          .archives = parts_.paths.appPath("Archives")};
}

template <typename Dialog>
void MainForm::showArchiveDialog(FailureFamily family, const typename Dialog::Work& work) {
  guarded(*this, parts_.messageBox, family, [this, &work] {
    const Hourglass hourglass(*this);
    Dialog dialog(archiveDialogParts(), work);
    dialog.Form_Load();
    dialog.exec();
    activateWindow();  // the dialog hides before its work, and the keyboard may have gone elsewhere
  });
}

void MainForm::showLastArchive(const QString& archive) {
  statusBar_->setPanelText(1, QStringLiteral("Last archive loaded: ") % archive);
}

void MainForm::FileArchive_Click() {
  guarded(*this, parts_.messageBox, FailureFamily::OpenArchiveSites, [this] {
    if (refusesWhileTracking()) return;
    if (!hasSitesToArchive(parts_.files, workingPaths_)) {
      parts_.messageBox.show("No site information to archive.", MessageBoxStyle::Information);
      return;
    }
    showArchiveDialog<ArchiveDialog>(
        FailureFamily::OpenArchiveSites,
        {.holdsArchiveFiles =
             [this](const Path& folder) { return holdsArchiveFiles(parts_.files, folder); },
         .archive = [this](const Path& folder,
                           EarlierArchive earlier) { archiveTo(folder, earlier); }});
  });
}

void MainForm::archiveTo(const Path& folder, EarlierArchive earlier) {
  moveIntoArchive(parts_.files, workingPaths_, folder, earlier);
  clearTree();
  showLastArchive(QStringLiteral("none"));
  rememberNoArchive(parts_.files, parts_.paths);
  setWindowTitle(QStringLiteral("Quorrix"));
}

void MainForm::FileLoadArchive_Click() {
  if (refusesWhileTracking()) return;
  showArchiveDialog<LoadArchiveDialog>(
      FailureFamily::OpenLoadArchiveDialog,
      {.holdsArchive = [this](const Path& folder) { return canBeLoaded(parts_.files, folder); },
       .displayHoldsSites = [this] { return tree_.size() >= 2; },
       .load = [this](const Path& folder) { loadFrom(folder); }});
}

void MainForm::loadFrom(const Path& folder) {
  workingPaths_.setFilesFolder(folder);
  clearTree();
  siteFile_.readSiteFile(tree_);
  treeView_->expandDNSNodes();
  takeOverArchive(parts_.files, parts_.paths, workingPaths_, folder);
  tree_.select(tree_.root());
  showLastArchive(textOfPath(folder));
  rememberArchive(parts_.files, parts_.paths, folder);
  setWindowTitle(QStringLiteral("Quorrix"));
}

void MainForm::FileDeleteArchive_Click() {
  if (refusesWhileTracking()) return;
  showArchiveDialog<DeleteArchiveDialog>(
      FailureFamily::OpenDeleteArchiveDialog,
      [this](const Path& folder, const std::vector<Path>& names) {
        return deleteArchiveFiles(parts_.files, folder, names);
      });
}

}  // namespace quorrix
