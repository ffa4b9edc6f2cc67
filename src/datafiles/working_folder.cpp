#include "datafiles/working_folder.h"

namespace quorrix {

void WorkingPaths::setFolder(const Path& folder) {
  loadPath = folder;
  setFilesFolder(folder);
}

void WorkingPaths::setFilesFolder(const Path& folder) {
  currentNodesFile = folder / data_file::kNodes;
  currentPurchasesFile = folder / data_file::kPurchases;
  currentUserIDPasswordFile = folder / data_file::kUserIDPassword;
  currentURLNotesFile = folder / data_file::kURLNotes;
}

}  // namespace quorrix
