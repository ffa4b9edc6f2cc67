// The peer: the site records as a table of an SQLite database, addresses indexed.
// The connection and its prepared statements stay open for the life of the object.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>

namespace quorrix::bench {

class SqliteSiteTable {
 public:
  enum class Synchronous { Off, Full };

  // Opens the database in WAL mode. Whatever fails throws std::runtime_error.
  SqliteSiteTable(const std::filesystem::path& path, Synchronous synchronous);

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
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;

  void execute(const char* sql);
  [[nodiscard]] Statement prepare(const char* sql);
  void store(sqlite3_stmt* statement, std::string_view address, char protocolFlag,
             std::string_view accessStamp);
  void check(int result) const;

  std::unique_ptr<sqlite3, Close> database_;
  Statement append_;
  Statement upsert_;
};

}  // namespace quorrix::bench
