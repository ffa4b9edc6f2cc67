// The three record files for the benchmarks. A row of texts represents both a record of
// the file and a row of the peer's table.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "datafiles/text_field.h"
#include "datafiles/working_folder.h"
#include "platform/file_system.h"
#include "sqlite_record_table.h"

namespace quorrix::bench {

using Row = SqliteRecordTable::Row;

// One of the program's own file classes, with the lifetime that it has in a dialog.
class RecordEditor {
 public:
  virtual ~RecordEditor() = default;
  virtual void find(const Row& row) = 0;  // throws if there is no such record
  virtual void save(const Row& row) = 0;
  virtual void remove(const Row& row) = 0;
};

struct RecordKind {
  std::string name;
  Path WorkingPaths::*path;
  std::size_t recordLength;
  RecordColumns columns;
  std::vector<FieldLayout> fields;  // of the columns
  std::string_view terminator;      // of every field after the site key

  // Makes a record of this site like one that a user enters. `version` makes entries
  // differ, so that the record to save is never in the file already.
  Row (*rowOf)(std::string_view siteKey, std::size_t version);

  std::unique_ptr<RecordEditor> (*edit)(FileSystem& files, const WorkingPaths& paths);

  [[nodiscard]] std::string recordOf(const Row& row) const;
};

[[nodiscard]] const RecordKind& notesKind();
[[nodiscard]] const RecordKind& userIDPasswordKind();
[[nodiscard]] const RecordKind& purchaseKind();

}  // namespace quorrix::bench
