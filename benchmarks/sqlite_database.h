// An SQLite database in WAL mode: what the peers' tables have in common. Every failure
// throws std::runtime_error.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace quorrix::bench {

class SqliteDatabase {
 public:
  enum class Synchronous { Off, Full };

  SqliteDatabase(const std::filesystem::path& path, Synchronous synchronous);

  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;

  void execute(const std::string& sql);
  [[nodiscard]] Statement prepare(const std::string& sql);

  // `text` must stay valid until the statement has run. Places count from 1.
  void bind(sqlite3_stmt* statement, int place, std::string_view text) const;
  void bind(sqlite3_stmt* statement, int place, int value) const;

  // Advances a statement to its next row. Returns false at the end.
  [[nodiscard]] bool step(sqlite3_stmt* statement) const;

  // Runs a statement to its end, ignores the rows left, and resets it for the next use.
  void run(sqlite3_stmt* statement) const;

 private:
  void check(int result) const;

  std::unique_ptr<sqlite3, Close> database_;
};

// The text of a column in the statement's current row. Columns count from 0.
[[nodiscard]] std::string_view textOf(sqlite3_stmt* statement, int column);

}  // namespace quorrix::bench
