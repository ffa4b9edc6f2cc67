// Finds the archives of a data folder.
#pragma once

#include <set>
#include <vector>

#include "data_tool/data_folder.h"

namespace quorrix {

struct FoundArchives {
  // Sorted by their places, see archivePlacesOf(), and then by their names.
  std::vector<DataFolder> archives;
  // The data folder and all folders that were looked into, with their links resolved.
  std::set<Path> searched;
};

// Every folder below a place of archives that holds a data file is an archive, except the data
// folder itself and unfinished output. Links to folders are followed, except those to a folder that
// contains the data folder. Each archive is found only once, if possible under its own name. A
// folder that cannot be listed and a link that leads nowhere are reported.
[[nodiscard]] FoundArchives findArchives(FileSystem& files, const Path& dataFolder,
                                         const ReportProblem& report);

}  // namespace quorrix
