// The data that all benchmarks share: addresses, site files, record files and SQLite
// tables of the same addresses in the same order. Each is made when first asked for, once
// a run.
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

  // At least `count` addresses: what the files of that size hold.
  [[nodiscard]] const AddressList& addresses(std::size_t count);

  // A working folder with a site file of `count` records.
  [[nodiscard]] WorkingPaths siteFile(std::size_t count);

  // A database in WAL mode with a SqliteSiteTable of `count` rows.
  [[nodiscard]] std::filesystem::path database(std::size_t count);

  // A working folder with a file of `count` records of this kind, one a site.
  [[nodiscard]] WorkingPaths recordFile(const RecordKind& kind, std::size_t count);

  // A database in WAL mode with a SqliteRecordTable of the same.
  [[nodiscard]] std::filesystem::path recordDatabase(const RecordKind& kind, std::size_t count);

 private:
  DataFolder folder_;
  AddressList addresses_;
};

}  // namespace quorrix::bench
