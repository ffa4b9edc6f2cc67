#include "archives/load_archive_dialog.h"

#include <utility>

namespace quorrix {
namespace {

constexpr std::string_view kNoArchive =
    "Folder does not contain a critical archive file. The folder must contain at least "
    "'nodes.dat'. Canceling operation.";

constexpr std::string_view kLoadAnyway =
    "The current display, and associated data, will be discarded before loading archive. Archive "
    "the current display first if you wish to retain the information. Load archive anyway?";

}  // namespace

LoadArchiveDialog::LoadArchiveDialog(const ArchiveDialogParts& parts, Work work)
    : ExistingArchiveDialog(
          parts,
          {.name = "LoadArchiveDialog",
           .caption = QStringLiteral("Load Sites Archive"),
           .prompt = QStringLiteral("Open the folder of the archive to load and then click OK.")}),
      work_(std::move(work)) {
  layOut(&File1(), QStringLiteral("Archive folder"));
}

void LoadArchiveDialog::OKButton_Click() {
  if (!chooseFolder()) return;
  runOrUnload(FailureFamily::LoadArchive, [this] { loadFromFolder(); });
}

void LoadArchiveDialog::loadFromFolder() {
  const Path folder = Dir1().path();
  if (!isConfirmed(aboutFolder("Load archive data from '", "'?"))) return;
  if (!work_.holdsArchive(folder)) {
    parts().messageBox.show(kNoArchive, MessageBoxStyle::Exclamation);
    return;
  }
  if (work_.displayHoldsSites() && !isConfirmed(kLoadAnyway)) return reject();
  giveWayTo([this, &folder] { work_.load(folder); });
  accept();
}

}  // namespace quorrix
