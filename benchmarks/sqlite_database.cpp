#include "sqlite_database.h"

#include <stdexcept>

namespace quorrix::bench {

SqliteDatabase::SqliteDatabase(const std::filesystem::path& path, Synchronous synchronous) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open(path.c_str(), &opened);
  database_.reset(opened);
  check(result);
  execute("PRAGMA journal_mode = WAL");
  execute(synchronous == Synchronous::Full ? "PRAGMA synchronous = FULL"
                                           : "PRAGMA synchronous = OFF");
}

void SqliteDatabase::execute(const std::string& sql) {
  check(sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr));
}

SqliteDatabase::Statement SqliteDatabase::prepare(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  check(sqlite3_prepare_v3(database_.get(), sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement,
                           nullptr));
  return Statement(statement);
}

void SqliteDatabase::bind(sqlite3_stmt* statement, int place, std::string_view text) const {
  check(sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()),
                          SQLITE_STATIC));
}

void SqliteDatabase::bind(sqlite3_stmt* statement, int place, int value) const {
  check(sqlite3_bind_int(statement, place, value));
}

bool SqliteDatabase::step(sqlite3_stmt* statement) const {
  const int result = sqlite3_step(statement);
  if (result != SQLITE_ROW && result != SQLITE_DONE) check(result);
  return result == SQLITE_ROW;
}

void SqliteDatabase::run(sqlite3_stmt* statement) const {
  while (step(statement)) continue;
  check(sqlite3_reset(statement));
}

void SqliteDatabase::check(int result) const {
  if (result == SQLITE_OK) return;
  throw std::runtime_error(database_ ? sqlite3_errmsg(database_.get()) : sqlite3_errstr(result));
}

std::string_view textOf(sqlite3_stmt* statement, int column) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

}  // namespace quorrix::bench
