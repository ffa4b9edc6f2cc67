// An SQLite database in WAL mode: what the peers' tables have in common. Whatever fails
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

  // `text` has to live until the statement has run. The first place is 1.
  void bind(sqlite3_stmt* statement, int place, std::string_view text) const;
  void bind(sqlite3_stmt* statement, int place, int value) const;

  // Takes a statement to its next row; false at the end.
  [[nodiscard]] bool step(sqlite3_stmt* statement) const;

  // Runs a statement that has no rows, and makes it ready for the next time.
  void run(sqlite3_stmt* statement) const;

 private:
  void check(int result) const;

  std::unique_ptr<sqlite3, Close> database_;
};

// Of the row that the statement stands at; the first column is 0.
[[nodiscard]] std::string_view textOf(sqlite3_stmt* statement, int column);

}  // namespace quorrix::bench
