#include "data_tool/export.h"

#include "data_tool/bookmarks_export.h"
#include "data_tool/csv_export.h"
#include "data_tool/html_export.h"
#include "data_tool/json_export.h"

namespace quorrix {

void exportFolders(const std::vector<DataFolder>& folders, RecordReader& reader,
                   const CodePage& codePage, ExportFormat format, Passwords passwords,
                   Output& output) {
  std::vector<FolderReader> readers;
  readers.reserve(folders.size());
  for (const DataFolder& folder : folders) readers.emplace_back(reader, codePage, folder);
  switch (format) {
    case ExportFormat::Json:
      return exportJson(readers, passwords, output);
    case ExportFormat::Csv:
      return exportCsv(readers, passwords, output);
    case ExportFormat::Html:
      return exportHtml(readers, passwords, output);
    case ExportFormat::NetscapeBookmarks:
      return exportBookmarks(readers, output);
  }
}

}  // namespace quorrix
