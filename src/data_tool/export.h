// Writes a data folder and its archives as one file.
#pragma once

#include <vector>

#include "data_tool/data_folder.h"
#include "data_tool/json_entries.h"
#include "data_tool/output.h"
#include "data_tool/record_reader.h"
#include "platform/code_page.h"

namespace quorrix {

enum class ExportFormat { Json, Csv, Html, NetscapeBookmarks };

// `folders` begins with the data folder; the others are its archives. JSON and CSV are written
// while the files are read. The other two first collect the sites of one folder in memory. Throws
// Problem, and whatever `output` throws.
void exportFolders(const std::vector<DataFolder>& folders, RecordReader& reader,
                   const CodePage& codePage, ExportFormat format, Passwords passwords,
                   Output& output);

}  // namespace quorrix
