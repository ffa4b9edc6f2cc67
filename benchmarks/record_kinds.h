// The three record files as the benchmarks see them: a row of texts is a record of the
// file and a row of the peer's table alike.
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

// The program's own file class, for as long as a dialog has it.
class RecordEditor {
 public:
  virtual ~RecordEditor() = default;
  virtual void find(const Row& row) = 0;  // throws when there is no such record
  virtual void save(const Row& row) = 0;
  virtual void remove(const Row& row) = 0;
};

struct RecordKind {
  std::string name;
  Path WorkingPaths::*path;
  std::size_t recordLength;
  RecordColumns columns;
  std::vector<FieldLayout> fields;  // of the columns
  std::string_view terminator;      // of every field behind the site's key

  // A record of this site as a user would have entered it. `version` tells one entry
  // from the next, so that no saving finds what it would write.
  Row (*rowOf)(std::string_view siteKey, std::size_t version);

  std::unique_ptr<RecordEditor> (*edit)(FileSystem& files, const WorkingPaths& paths);

  [[nodiscard]] std::string recordOf(const Row& row) const;
};

[[nodiscard]] const RecordKind& notesKind();
[[nodiscard]] const RecordKind& userIDPasswordKind();
[[nodiscard]] const RecordKind& purchaseKind();

}  // namespace quorrix::bench
