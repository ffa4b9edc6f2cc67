// The working data folder: the files that every operation reads and writes.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The paths in use; set at start-up and by loading an archive, read at the
// moment of each operation.
struct WorkingPaths {
  Path loadPath;
  Path currentNodesFile;
  Path currentPurchasesFile;
  Path currentUserIDPasswordFile;
  Path currentURLNotesFile;

  // Points all of them into one folder.
  void setFolder(const Path& folder);
};

}  // namespace quorrix
