// The sentences for failures. Every operation of the user's has a family; a
// family knows some failure numbers and has one sentence for all others.
#pragma once

#include <string>

namespace quorrix {

enum class FailureFamily {
  StartUp,
  Tracking,
  DeleteSites,
  SaveNotes,
  DeleteNotes,
  OpenNotes,
  SaveUserIDPassword,
  DeleteUserIDPassword,
  OpenUserIDPassword,
  SavePurchase,
  DeletePurchase,
  OpenNewPurchase,
  OpenPurchases,
  ArchiveSites,
  LoadArchive,
  DeleteArchive,
  CreateArchive,
  OpenArchiveSites,  // the menu command; the dialogs as they load have their own
  OpenArchiveDialog,
  OpenLoadArchiveDialog,
  OpenDeleteArchiveDialog,
  OpenNewArchiveDialog,
  ChooseDrive,
  OpenFolder,  // in a dialog's folder list; as for a drive, the list stays where it was
  LinkInBrowser,
  OpenSearch,
  ProcessSearch,
  LocateInDisplay,
  About,
  Help,
  OtherCommand,  // a command that has no family: the reason alone
};

// The whole text for the message box, irregular wordings included.
[[nodiscard]] std::string failureMessage(FailureFamily family, int number);

}  // namespace quorrix
