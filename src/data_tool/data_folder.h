// The folders that hold data files: the one that the user names, and its archives.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "data_tool/problem.h"
#include "platform/file_system.h"

namespace quorrix {

struct DataFolder {
  Path path;
  // The archive's name in UTF-8, such as "2026/May"; empty for the data folder.
  std::string archive;
  // The same as a path, for copies. Of two archives of the same name, the one inside the
  // data folder has " (2)" at its end.
  Path name = {};

  bool operator==(const DataFolder&) const = default;
};

// The name of the folder in which Quorrix keeps its data, beside the program.
inline constexpr const char* kDataFolderName = "Data";

// The data folder of this user's Quorrix: beside the program if there is one, otherwise where
// packages for all users of a system make it. `userFolder` is where a user's programs keep
// their data, such as ~/.local/share.
[[nodiscard]] Path defaultDataFolder(FileSystem& files, const Path& programFolder,
                                     const Path& userFolder);

// Whether the folder holds one of the four data files.
[[nodiscard]] bool holdsDataFiles(FileSystem& files, const Path& folder);

// Throws Problem if the folder is missing.
void requireFolder(FileSystem& files, const Path& folder);

// Throws Problem if the folder is missing, or holds neither a data file nor load.txt. So a wrong
// folder is not taken for an empty one: Quorrix always has these files, even before the first site.
void requireDataFiles(FileSystem& files, const Path& folder);

enum class Archives { Include, LeaveOut };

// Receives what keeps one archive from being read, but not the others.
using ReportProblem = std::function<void(const Problem& problem)>;

// Where the archives of a data folder are: in the folder "Archives" beside it, as in the program's
// folder, and in the one inside it, as in a copy. A missing one is left out. If the data folder is
// named by a link and nothing is beside the link, the first place is beside the folder itself. A
// place that cannot be reached is reported.
[[nodiscard]] std::vector<Path> archivePlacesOf(FileSystem& files, const Path& dataFolder,
                                                const ReportProblem& report);

// The data folder, then its archives as findArchives() finds them. Throws Problem as
// requireDataFiles().
[[nodiscard]] std::vector<DataFolder> dataFoldersOf(FileSystem& files, const Path& dataFolder,
                                                    Archives archives, const ReportProblem& report);

// The same without those archives that have a file that cannot be opened; they are reported, too.
[[nodiscard]] std::vector<DataFolder> readableFoldersOf(FileSystem& files, const Path& dataFolder,
                                                        Archives archives,
                                                        const ReportProblem& report);

}  // namespace quorrix
