#include "sqlite_search_table.h"

namespace quorrix::bench {

SqliteSearchTable::SqliteSearchTable(const std::filesystem::path& path)
    : database_(path, SqliteDatabase::Synchronous::Off) {}

void SqliteSearchTable::create() {
  database_.execute(
      "CREATE TABLE site (number INTEGER PRIMARY KEY, address TEXT NOT NULL, "
      "access_stamp TEXT NOT NULL, day INTEGER NOT NULL)");
  database_.execute("BEGIN");
  append_ = database_.prepare("INSERT INTO site (address, access_stamp, day) VALUES (?1, ?2, ?3)");
}

void SqliteSearchTable::append(std::string_view address, std::string_view accessStamp, int day) {
  database_.bind(append_.get(), 1, address);
  database_.bind(append_.get(), 2, accessStamp);
  database_.bind(append_.get(), 3, day);
  database_.run(append_.get());
}

void SqliteSearchTable::finish() {
  database_.execute("COMMIT");
  database_.execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

std::vector<std::string> SqliteSearchTable::likeText(std::string_view pattern) {
  const auto statement =
      database_.prepare("SELECT address FROM site WHERE address LIKE ?1 ORDER BY number");
  database_.bind(statement.get(), 1, pattern);
  return addressesOf(statement.get());
}

std::vector<std::string> SqliteSearchTable::sinceDay(int day) {
  const auto statement =
      database_.prepare("SELECT address FROM site WHERE day >= ?1 ORDER BY number");
  database_.bind(statement.get(), 1, day);
  return addressesOf(statement.get());
}

std::vector<std::string> SqliteSearchTable::likeTextSinceDay(std::string_view pattern, int day) {
  const auto statement = database_.prepare(
      "SELECT address FROM site WHERE day >= ?2 AND address LIKE ?1 ORDER BY number");
  database_.bind(statement.get(), 1, pattern);
  database_.bind(statement.get(), 2, day);
  return addressesOf(statement.get());
}

std::vector<std::string> SqliteSearchTable::addressesOf(sqlite3_stmt* statement) {
  std::vector<std::string> addresses;
  while (database_.step(statement)) addresses.emplace_back(textOf(statement, 0));
  return addresses;
}

}  // namespace quorrix::bench
