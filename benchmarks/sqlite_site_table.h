// The peer: the site records as a table of an SQLite database, addresses indexed.
// The connection and its prepared statements stay open for the life of the object.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>

#include "sqlite_database.h"

namespace quorrix::bench {

class SqliteSiteTable {
 public:
  using Synchronous = SqliteDatabase::Synchronous;

  SqliteSiteTable(const std::filesystem::path& path, Synchronous synchronous)
      : database_(path, synchronous) {}

  // Filling an empty database: create(), append() for each row, finish().
  void create();
  void append(std::string_view address, char protocolFlag, std::string_view accessStamp);
  void finish();

  // The number of rows, for a table that nothing was ever deleted from.
  [[nodiscard]] std::uint64_t rowCount();

  // All rows in the order in which they were appended.
  using Visit = std::function<void(std::string_view address, char protocolFlag)>;
  void scan(const Visit& visit);

  // Inserts the row, or sets flag and stamp of the one with this address; one transaction.
  void upsert(std::string_view address, char protocolFlag, std::string_view accessStamp);

 private:
  void store(sqlite3_stmt* statement, std::string_view address, char protocolFlag,
             std::string_view accessStamp);

  SqliteDatabase database_;
  SqliteDatabase::Statement append_;
  SqliteDatabase::Statement upsert_;
};

}  // namespace quorrix::bench
