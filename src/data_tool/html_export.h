// The tree of sites with everything that is kept about them, as one page for a browser. It needs
// no network and no other file. Every branch can be folded; a script adds a search box.
#pragma once

#include <vector>

#include "data_tool/folder_reader.h"
#include "data_tool/json_entries.h"
#include "data_tool/output.h"

namespace quorrix {

void exportHtml(std::vector<FolderReader>& folders, Passwords passwords, Output& output);

}  // namespace quorrix
