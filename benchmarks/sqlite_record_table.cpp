#include "sqlite_record_table.h"

#include <utility>

namespace quorrix::bench {
namespace {

// Joins the results of `itemOf` for every name and its place, counted from 1, with
// `separator`.
template <typename ItemOf>
std::string joined(std::span<const std::string> names, const char* separator, ItemOf itemOf) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += separator;
    text += itemOf(names[i], std::to_string(i + 1));
  }
  return text;
}

std::string nameAlone(const std::string& name, const std::string&) { return name; }

}  // namespace

SqliteRecordTable::SqliteRecordTable(const std::filesystem::path& path, RecordColumns columns,
                                     Synchronous synchronous)
    : database_(path, synchronous), columns_(std::move(columns)) {}

void SqliteRecordTable::create() {
  const std::span<const std::string> names(columns_.names);
  database_.execute(
      "CREATE TABLE record (number INTEGER PRIMARY KEY, " +
      joined(names, ", ",
             [](const std::string& name, const std::string&) { return name + " TEXT NOT NULL"; }) +
      ")");
  database_.execute("CREATE UNIQUE INDEX record_keys ON record (" +
                    joined(names.first(columns_.keys), ", ", nameAlone) + ")");
  database_.execute("BEGIN");
}

void SqliteRecordTable::finish() {
  database_.execute("COMMIT");
  database_.execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

SqliteRecordTable::Row SqliteRecordTable::find(std::span<const std::string> keys) {
  prepare();
  bind(find_.get(), keys);
  Row row;
  if (database_.step(find_.get())) {
    for (int i = 0; i < static_cast<int>(columns_.names.size()); ++i) {
      row.emplace_back(textOf(find_.get(), i));
    }
  }
  database_.run(find_.get());
  return row;
}

void SqliteRecordTable::upsert(const Row& row) {
  prepare();
  bind(upsert_.get(), row);
  database_.run(upsert_.get());
}

void SqliteRecordTable::remove(std::span<const std::string> keys) {
  prepare();
  bind(remove_.get(), keys);
  database_.run(remove_.get());
}

void SqliteRecordTable::bind(sqlite3_stmt* statement, std::span<const std::string> values) const {
  for (std::size_t i = 0; i < values.size(); ++i) {
    database_.bind(statement, static_cast<int>(i + 1), values[i]);
  }
}

std::string SqliteRecordTable::whereKeys() const {
  return " WHERE " + joined(std::span(columns_.names).first(columns_.keys), " AND ",
                            [](const std::string& name, const std::string& place) {
                              return name + " = ?" + place;
                            });
}

void SqliteRecordTable::prepare() {
  if (find_) return;
  const std::span<const std::string> names(columns_.names);
  const std::string all = joined(names, ", ", nameAlone);
  find_ = database_.prepare("SELECT " + all + " FROM record" + whereKeys());
  upsert_ = database_.prepare(
      "INSERT INTO record (" + all + ") VALUES (" +
      joined(names, ", ",
             [](const std::string&, const std::string& place) { return "?" + place; }) +
      ") ON CONFLICT (" + joined(names.first(columns_.keys), ", ", nameAlone) + ") DO UPDATE SET " +
      joined(names.subspan(columns_.keys), ", ", [](const std::string& name, const std::string&) {
        return name + " = excluded." + name;
      }));
  remove_ = database_.prepare("DELETE FROM record" + whereKeys());
}

}  // namespace quorrix::bench
