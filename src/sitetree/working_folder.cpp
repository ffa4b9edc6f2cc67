#include "sitetree/working_folder.h"

namespace quorrix {

void WorkingPaths::setFolder(const Path& folder) {
  loadPath = folder;
  currentNodesFile = folder / "nodes.dat";
  currentPurchasesFile = folder / "purchases.dat";
  currentUserIDPasswordFile = folder / "info.dat";
  currentURLNotesFile = folder / "notes.dat";
}

}  // namespace quorrix
