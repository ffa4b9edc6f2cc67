// The peer of a record file: its records as a table of an SQLite database, with one index
// over the columns that identify a record. The connection and its prepared statements
// stay open for the life of the object.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "sqlite_database.h"

namespace quorrix::bench {

struct RecordColumns {
  std::vector<std::string> names;
  std::size_t keys;  // this many of the first columns identify a record
};

class SqliteRecordTable {
 public:
  using Synchronous = SqliteDatabase::Synchronous;
  using Row = std::vector<std::string>;

  SqliteRecordTable(const std::filesystem::path& path, RecordColumns columns,
                    Synchronous synchronous);

  // To fill an empty database, call create(), upsert() for each row, and finish().
  void create();
  void finish();

  // Returns the row with these keys, or an empty row if no row has them.
  [[nodiscard]] Row find(std::span<const std::string> keys);

  // Inserts the row, or updates the other columns of the row with the same keys.
  void upsert(const Row& row);

  void remove(std::span<const std::string> keys);

 private:
  void bind(sqlite3_stmt* statement, std::span<const std::string> values) const;
  [[nodiscard]] std::string whereKeys() const;
  void prepare();

  SqliteDatabase database_;
  RecordColumns columns_;
  SqliteDatabase::Statement find_;
  SqliteDatabase::Statement upsert_;
  SqliteDatabase::Statement remove_;
};

}  // namespace quorrix::bench
