// All records as comma-separated values. Each record is a line; its column "kind" says which file
// it is from: site, notes, login or purchase. The other columns are those of csv_columns.h; what a
// kind does not have is empty. The column "password" is there only if passwords are to be shown.
#pragma once

#include <vector>

#include "data_tool/folder_reader.h"
#include "data_tool/json_entries.h"
#include "data_tool/output.h"

namespace quorrix {

void exportCsv(std::vector<FolderReader>& folders, Passwords passwords, Output& output);

}  // namespace quorrix
