// The peer of the site file: its records as a table of an SQLite database, with an index
// over the addresses. The connection and the statements that write stay open for the life
// of the object.
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

  // To fill an empty database, call create(), append() for each row, and finish().
  void create();
  void append(std::string_view address, char protocolFlag, std::string_view accessStamp);
  void finish();

  // The number of rows, provided that no row was ever deleted.
  [[nodiscard]] std::uint64_t rowCount();

  // Visits all rows in the order in which they were appended.
  using Visit = std::function<void(std::string_view address, char protocolFlag)>;
  void scan(const Visit& visit);

  // Inserts the row, or updates the flag and the stamp of the row with this address, in
  // one transaction.
  void upsert(std::string_view address, char protocolFlag, std::string_view accessStamp);

 private:
  void store(sqlite3_stmt* statement, std::string_view address, char protocolFlag,
             std::string_view accessStamp);

  SqliteDatabase database_;
  SqliteDatabase::Statement append_;
  SqliteDatabase::Statement upsert_;
};

}  // namespace quorrix::bench
