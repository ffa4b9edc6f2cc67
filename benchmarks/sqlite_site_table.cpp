#include "sqlite_site_table.h"

#include <stdexcept>

namespace quorrix::bench {
namespace {

constexpr const char* kUpsert =
    "INSERT INTO site (address, protocol_flag, access_stamp) VALUES (?1, ?2, ?3) "
    "ON CONFLICT (address) DO UPDATE SET protocol_flag = excluded.protocol_flag, "
    "access_stamp = excluded.access_stamp";

std::string_view textOf(sqlite3_stmt* statement, int column) {
  const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

}  // namespace

SqliteSiteTable::SqliteSiteTable(const std::filesystem::path& path, Synchronous synchronous) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open(path.c_str(), &opened);
  database_.reset(opened);
  check(result);
  execute("PRAGMA journal_mode = WAL");
  execute(synchronous == Synchronous::Full ? "PRAGMA synchronous = FULL"
                                           : "PRAGMA synchronous = OFF");
}

void SqliteSiteTable::create() {
  execute(
      "CREATE TABLE site (number INTEGER PRIMARY KEY, address TEXT NOT NULL, "
      "protocol_flag TEXT NOT NULL, access_stamp TEXT NOT NULL)");
  execute("BEGIN");
  append_ = prepare("INSERT INTO site (address, protocol_flag, access_stamp) VALUES (?1, ?2, ?3)");
}

void SqliteSiteTable::append(std::string_view address, char protocolFlag,
                             std::string_view accessStamp) {
  store(append_.get(), address, protocolFlag, accessStamp);
}

void SqliteSiteTable::finish() {
  execute("CREATE UNIQUE INDEX site_address ON site (address)");
  execute("COMMIT");
  execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

std::uint64_t SqliteSiteTable::rowCount() {
  const Statement statement = prepare("SELECT max(number) FROM site");
  if (sqlite3_step(statement.get()) != SQLITE_ROW) check(SQLITE_ERROR);
  return static_cast<std::uint64_t>(sqlite3_column_int64(statement.get(), 0));
}

void SqliteSiteTable::scan(const Visit& visit) {
  const Statement statement = prepare("SELECT address, protocol_flag FROM site ORDER BY number");
  int result = sqlite3_step(statement.get());
  for (; result == SQLITE_ROW; result = sqlite3_step(statement.get())) {
    visit(textOf(statement.get(), 0), textOf(statement.get(), 1).front());
  }
  if (result != SQLITE_DONE) check(result);
}

void SqliteSiteTable::upsert(std::string_view address, char protocolFlag,
                             std::string_view accessStamp) {
  if (!upsert_) upsert_ = prepare(kUpsert);
  store(upsert_.get(), address, protocolFlag, accessStamp);
}

void SqliteSiteTable::execute(const char* sql) {
  check(sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr));
}

SqliteSiteTable::Statement SqliteSiteTable::prepare(const char* sql) {
  sqlite3_stmt* statement = nullptr;
  check(
      sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
  return Statement(statement);
}

void SqliteSiteTable::store(sqlite3_stmt* statement, std::string_view address, char protocolFlag,
                            std::string_view accessStamp) {
  const auto bind = [&](int place, std::string_view text) {
    check(sqlite3_bind_text(statement, place, text.data(), static_cast<int>(text.size()),
                            SQLITE_STATIC));
  };
  bind(1, address);
  bind(2, {&protocolFlag, 1});
  bind(3, accessStamp);
  if (const int result = sqlite3_step(statement); result != SQLITE_DONE) check(result);
  check(sqlite3_reset(statement));
}

void SqliteSiteTable::check(int result) const {
  if (result == SQLITE_OK) return;
  throw std::runtime_error(database_ ? sqlite3_errmsg(database_.get()) : sqlite3_errstr(result));
}

}  // namespace quorrix::bench
