// The peer of the search: the site records as a table of an SQLite database, without an
// index. The day of each visit is a number that grows with the date (20251121). The
// connection stays open for the life of the object; each search prepares its own
// statement.
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

  // To fill an empty database, call create(), append() for each row, and finish().
  void create();
  void append(std::string_view address, std::string_view accessStamp, int day);
  void finish();

  // Return the addresses of all matching rows in the order in which they were appended. A
  // pattern is a LIKE pattern, which ignores the case of unaccented letters.
  [[nodiscard]] std::vector<std::string> likeText(std::string_view pattern);
  [[nodiscard]] std::vector<std::string> sinceDay(int day);
  [[nodiscard]] std::vector<std::string> likeTextSinceDay(std::string_view pattern, int day);

 private:
  [[nodiscard]] std::vector<std::string> addressesOf(sqlite3_stmt* statement);

  SqliteDatabase database_;
  SqliteDatabase::Statement append_;
};

}  // namespace quorrix::bench
