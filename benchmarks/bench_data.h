// The data that all benchmarks share: addresses, and site files, record files and SQLite
// tables of the same addresses in the same order. Each is created once per run, when it
// is first requested.
#pragma once

#include <cstddef>
#include <filesystem>

#include "address_list.h"
#include "data_folder.h"
#include "datafiles/working_folder.h"
#include "record_kinds.h"

namespace quorrix::bench {

class BenchData {
 public:
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }

  // At least `count` addresses. The first `count` are those in the files of that size.
  [[nodiscard]] const AddressList& addresses(std::size_t count);

  // A working folder with a site file of `count` records.
  [[nodiscard]] WorkingPaths siteFile(std::size_t count);

  // A database in WAL mode with a SqliteSiteTable of `count` rows.
  [[nodiscard]] std::filesystem::path database(std::size_t count);

  // A working folder with a file of `count` records of this kind, one per site.
  [[nodiscard]] WorkingPaths recordFile(const RecordKind& kind, std::size_t count);

  // A database in WAL mode with a SqliteRecordTable of the same records.
  [[nodiscard]] std::filesystem::path recordDatabase(const RecordKind& kind, std::size_t count);

 private:
  DataFolder folder_;
  AddressList addresses_;
};

}  // namespace quorrix::bench
