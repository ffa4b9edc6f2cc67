// The working data folder: the files that every operation reads and writes.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The four data files. Their names are the same in the working folder and in an archive.
namespace data_file {
inline constexpr const char* kNodes = "nodes.dat";
inline constexpr const char* kPurchases = "purchases.dat";
inline constexpr const char* kUserIDPassword = "info.dat";
inline constexpr const char* kURLNotes = "notes.dat";
}  // namespace data_file

// The paths in use. They are set at start-up and when an archive is loaded. Each
// operation reads them when it runs.
struct WorkingPaths {
  Path loadPath;
  Path currentNodesFile;
  Path currentPurchasesFile;
  Path currentUserIDPasswordFile;
  Path currentURLNotesFile;

  // Sets loadPath to `folder` and the four files to those in it.
  void setFolder(const Path& folder);

  // Sets the four files to those in `folder`. loadPath does not change.
  void setFilesFolder(const Path& folder);
};

}  // namespace quorrix
