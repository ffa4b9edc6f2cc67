// The peer of the search: the site records as a table of an SQLite database, nothing
// indexed, the day of each visit as a number that grows with the calendar (20251121).
// Connection and statements stay open for the life of the object.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "sqlite_database.h"

namespace quorrix::bench {

class SqliteSearchTable {
 public:
  explicit SqliteSearchTable(const std::filesystem::path& path);

  // Filling an empty database: create(), append() for each row, finish().
  void create();
  void append(std::string_view address, std::string_view accessStamp, int day);
  void finish();

  // The addresses of all matching rows in the order in which they were appended. A
  // pattern is one of LIKE, which ignores the case of unaccented letters.
  [[nodiscard]] std::vector<std::string> likeText(std::string_view pattern);
  [[nodiscard]] std::vector<std::string> sinceDay(int day);
  [[nodiscard]] std::vector<std::string> likeTextSinceDay(std::string_view pattern, int day);

 private:
  [[nodiscard]] std::vector<std::string> addressesOf(sqlite3_stmt* statement);

  SqliteDatabase database_;
  SqliteDatabase::Statement append_;
};

}  // namespace quorrix::bench
