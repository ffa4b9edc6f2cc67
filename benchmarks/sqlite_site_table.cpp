#include "sqlite_site_table.h"

#include <stdexcept>

namespace quorrix::bench {
namespace {

constexpr const char* kUpsert =
    "INSERT INTO site (address, protocol_flag, access_stamp) VALUES (?1, ?2, ?3) "
    "ON CONFLICT (address) DO UPDATE SET protocol_flag = excluded.protocol_flag, "
    "access_stamp = excluded.access_stamp";

}  // namespace

void SqliteSiteTable::create() {
  database_.execute(
      "CREATE TABLE site (number INTEGER PRIMARY KEY, address TEXT NOT NULL, "
      "protocol_flag TEXT NOT NULL, access_stamp TEXT NOT NULL)");
  database_.execute("BEGIN");
  append_ = database_.prepare(
      "INSERT INTO site (address, protocol_flag, access_stamp) VALUES (?1, ?2, ?3)");
}

void SqliteSiteTable::append(std::string_view address, char protocolFlag,
                             std::string_view accessStamp) {
  store(append_.get(), address, protocolFlag, accessStamp);
}

void SqliteSiteTable::finish() {
  database_.execute("CREATE UNIQUE INDEX site_address ON site (address)");
  database_.execute("COMMIT");
  database_.execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

std::uint64_t SqliteSiteTable::rowCount() {
  const auto statement = database_.prepare("SELECT max(number) FROM site");
  if (!database_.step(statement.get())) throw std::runtime_error("no row with the greatest number");
  return static_cast<std::uint64_t>(sqlite3_column_int64(statement.get(), 0));
}

void SqliteSiteTable::scan(const Visit& visit) {
  const auto statement =
      database_.prepare("SELECT address, protocol_flag FROM site ORDER BY number");
  while (database_.step(statement.get())) {
    visit(textOf(statement.get(), 0), textOf(statement.get(), 1).front());
  }
}

void SqliteSiteTable::upsert(std::string_view address, char protocolFlag,
                             std::string_view accessStamp) {
  if (!upsert_) upsert_ = database_.prepare(kUpsert);
  store(upsert_.get(), address, protocolFlag, accessStamp);
}

void SqliteSiteTable::store(sqlite3_stmt* statement, std::string_view address, char protocolFlag,
                            std::string_view accessStamp) {
  database_.bind(statement, 1, address);
  database_.bind(statement, 2, {&protocolFlag, 1});
  database_.bind(statement, 3, accessStamp);
  database_.run(statement);
}

}  // namespace quorrix::bench
