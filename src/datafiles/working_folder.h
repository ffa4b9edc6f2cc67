// The working data folder: the files that every operation reads and writes.
#pragma once

#include "platform/file_system.h"

namespace quorrix {

// The four data files, in the working folder and in an archive alike.
namespace data_file {
inline constexpr const char* kNodes = "nodes.dat";
inline constexpr const char* kPurchases = "purchases.dat";
inline constexpr const char* kUserIDPassword = "info.dat";
inline constexpr const char* kURLNotes = "notes.dat";
}  // namespace data_file

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

  // Points the four files into a folder; loadPath stays.
  void setFilesFolder(const Path& folder);
};

}  // namespace quorrix
