// The three record files as the benchmarks see them: a row of texts is a record of the
// file and a row of the peer's table alike.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"
#include "sitetree/text_field.h"
#include "sitetree/working_folder.h"
#include "sqlite_record_table.h"

namespace quorrix::bench {

using Row = SqliteRecordTable::Row;

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

  // What the program's own file class does.
  using Operation = void (*)(FileSystem& files, const WorkingPaths& paths, const Row& row);
  Operation find;
  Operation save;
  Operation remove;

  [[nodiscard]] std::string recordOf(const Row& row) const;
};

[[nodiscard]] const RecordKind& notesKind();
[[nodiscard]] const RecordKind& userIDPasswordKind();
[[nodiscard]] const RecordKind& purchaseKind();

}  // namespace quorrix::bench
