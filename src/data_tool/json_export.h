// All records as one JSON object: {"sites": [...], "notes": [...], "logins": [...],
// "purchases": [...], "archives": [...]}. Each archive is an object of the same shape, with its
// "name" and without "archives". Every entry is in a line of its own.
#pragma once

#include <vector>

#include "data_tool/folder_reader.h"
#include "data_tool/json_entries.h"
#include "data_tool/output.h"

namespace quorrix {

// `folders` is not empty, and begins with the data folder.
void exportJson(std::vector<FolderReader>& folders, Passwords passwords, Output& output);

}  // namespace quorrix
