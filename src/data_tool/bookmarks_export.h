// The sites as a bookmarks file that browsers import. Each host is a folder, and so is each
// archive. Notes, user IDs and purchases have no place in such a file.
#pragma once

#include <vector>

#include "data_tool/folder_reader.h"
#include "data_tool/output.h"

namespace quorrix {

void exportBookmarks(std::vector<FolderReader>& folders, Output& output);

}  // namespace quorrix
