// The peer of a record file: its records as a table of an SQLite database, the columns
// that a record is found by indexed together. The connection and its prepared
// statements stay open for the life of the object.
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
  std::size_t keys;  // so many of the first ones are what a record is found by
};

class SqliteRecordTable {
 public:
  using Synchronous = SqliteDatabase::Synchronous;
  using Row = std::vector<std::string>;

  SqliteRecordTable(const std::filesystem::path& path, RecordColumns columns,
                    Synchronous synchronous);

  // Filling an empty database: create(), upsert() for each row, finish().
  void create();
  void finish();

  // The row of `keys`, empty where there is none.
  [[nodiscard]] Row find(std::span<const std::string> keys);

  // Inserts the row, or sets the other columns of the one with its keys.
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
