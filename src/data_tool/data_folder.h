// The folders that hold data files: the one that the user names, and its archives.
#pragma once

#include <string>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

struct DataFolder {
  Path path;
  // The archive's name in UTF-8, such as "2026/May"; empty for the data folder.
  std::string archive;

  bool operator==(const DataFolder&) const = default;
};

// The name of the folder in which Quorrix keeps its data, beside the program.
inline constexpr const char* kDataFolderName = "Data";

// The data folder of this user's Quorrix: beside the program if there is one, otherwise where
// packages for all users of a system make it. `userFolder` is where a user's programs keep
// their data, such as ~/.local/share.
[[nodiscard]] Path defaultDataFolder(FileSystem& files, const Path& programFolder,
                                     const Path& userFolder);

// Where the archives of a data folder are: in the folder "Archives" inside it, as in a copy,
// otherwise in the one beside it, as in the program's folder. Either may be missing.
[[nodiscard]] Path archivesOf(FileSystem& files, const Path& dataFolder);

// Whether the folder holds one of the four data files.
[[nodiscard]] bool holdsDataFiles(FileSystem& files, const Path& folder);

// Throws Problem if the folder is missing.
void requireFolder(FileSystem& files, const Path& folder);

enum class Archives { Include, LeaveOut };

// The data folder, then its archives sorted by their paths. Every folder below the place of the
// archives that holds a data file is one, except the data folder itself. A linked folder is
// read, but not the folders below it. Throws Problem if the data folder is missing or if a folder
// cannot be read.
[[nodiscard]] std::vector<DataFolder> dataFoldersOf(FileSystem& files, const Path& dataFolder,
                                                    Archives archives);

}  // namespace quorrix
