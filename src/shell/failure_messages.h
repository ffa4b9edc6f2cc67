// The sentences for failures. Every user operation has a family. A family has sentences
// for some failure numbers, and one sentence for all others.
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
  OpenArchiveSites,  // the menu command; loading a dialog has its own family
  OpenArchiveDialog,
  OpenLoadArchiveDialog,
  OpenDeleteArchiveDialog,
  OpenNewArchiveDialog,
  ChooseDrive,
  OpenFolder,  // in a dialog's folder list, which stays where it was, as it does for ChooseDrive
  LinkInBrowser,
  OpenSearch,
  ProcessSearch,
  LocateInDisplay,
  About,
  Help,
  OtherCommand,  // a command that has no family; shows only the reason
};

// The whole text for the message box, including irregular wordings.
[[nodiscard]] std::string failureMessage(FailureFamily family, int number);

}  // namespace quorrix
