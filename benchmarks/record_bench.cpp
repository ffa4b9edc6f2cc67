#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_file_system.h"
#include "record_kinds.h"
#include "records/record_file.h"
#include "sqlite_record_table.h"
#include "turns.h"
#include "unsynced_file_system.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kRecords = sized(kLastRecordNumber);
constexpr int kTurns = timed(51);

// As for visits: a log that still grows costs more to sync.
constexpr std::size_t kChangesUntilLogIsReused = sized(2'000);

using Synchronous = SqliteRecordTable::Synchronous;

enum class Sync { Yes, No };
enum class Operation { Find, Replace, Append, Remove };

// What every contestant works on: the last record of a file of one kind.
class LastRecord {
 public:
  LastRecord(BenchData& data, const RecordKind& kind, Operation operation)
      : kind_(kind),
        operation_(operation),
        paths_(data.recordFile(kind, kRecords)),
        database_(data.recordDatabase(kind, kRecords)),
        before_(kind.rowOf(data.addresses(kRecords)[kRecords - 1], 0)),
        after_(kind.rowOf(data.addresses(kRecords)[kRecords - 1], 1)) {}

  // Restores the record in the file, or removes it if it is to be appended.
  void prepareFile() {
    if (operation_ == Operation::Append) return std::filesystem::resize_file(path(), offset());
    files_.openRandomAccess(path())->writeAt(offset(), kind_.recordOf(before_));
  }

  // A dialog finds its record before it changes it. That search is measured by
  // Operation::Find.
  std::unique_ptr<RecordEditor> openEditor(FileSystem& files) {
    auto editor = kind_.edit(files, paths_);
    if (operation_ == Operation::Replace || operation_ == Operation::Remove) editor->find(before_);
    return editor;
  }

  void work(RecordEditor& editor) {
    switch (operation_) {
      case Operation::Find:
        return editor.find(before_);
      case Operation::Remove:
        return editor.remove(before_);
      case Operation::Replace:
      case Operation::Append:
        return editor.save(after_);
    }
  }

  void prepareTable(SqliteRecordTable& table) {
    if (operation_ == Operation::Append) return table.remove(keys());
    table.upsert(before_);
  }

  void workOnTable(SqliteRecordTable& table) {
    switch (operation_) {
      case Operation::Find:
        if (table.find(keys()) != before_) throw std::runtime_error("the row sought is not found");
        return;
      case Operation::Remove:
        return table.remove(keys());
      case Operation::Replace:
      case Operation::Append:
        return table.upsert(after_);
    }
  }

  [[nodiscard]] SqliteRecordTable table(Synchronous synchronous) const {
    return {database_, kind_.columns, synchronous};
  }

  [[nodiscard]] const Path& path() const { return paths_.*kind_.path; }
  [[nodiscard]] std::size_t offset() const { return (kRecords - 1) * kind_.recordLength; }
  [[nodiscard]] std::string bytesAfter() const { return kind_.recordOf(after_); }

  void growLog() {
    SqliteRecordTable growing = table(Synchronous::Off);
    for (std::size_t i = 0; i < kChangesUntilLogIsReused; ++i) {
      growing.upsert(i % 2 == 0 ? after_ : before_);
    }
  }

 private:
  [[nodiscard]] std::span<const std::string> keys() const {
    return std::span(before_).first(kind_.columns.keys);
  }

  const RecordKind& kind_;
  Operation operation_;
  WorkingPaths paths_;
  Path database_;
  Row before_;
  Row after_;
  PosixFileSystem files_;
};

using Last = std::shared_ptr<LastRecord>;

Turn fileTurn(const Last& last, Sync sync) {
  struct Dialog {
    PosixFileSystem real;
    UnsyncedFileSystem unsynced{real};
    std::unique_ptr<RecordEditor> editor;
  };
  const auto dialog = std::make_shared<Dialog>();
  return {.run = [last, dialog] { last->work(*dialog->editor); },
          .prepare =
              [last, dialog, sync] {
                last->prepareFile();
                dialog->editor = last->openEditor(
                    sync == Sync::Yes ? static_cast<FileSystem&>(dialog->real) : dialog->unsynced);
              }};
}

Turn sqliteTurn(const Last& last, Synchronous synchronous) {
  const auto table = std::make_shared<SqliteRecordTable>(last->table(synchronous));
  last->growLog();
  return {.run = [last, table] { last->workOnTable(*table); },
          .prepare = [last, table] { last->prepareTable(*table); }};
}

// Writes the record in place and syncs the file, and nothing else.
Turn writeLimitTurn(const Last& last) {
  return {.run =
              [last, bytes = last->bytesAfter()] {
                const FileDescriptor file(::open(last->path().c_str(), O_RDWR | O_CLOEXEC));
                if (::pwrite(file.number(), bytes.data(), bytes.size(),
                             static_cast<off_t>(last->offset())) < 0 ||
                    ::fdatasync(file.number()) != 0) {
                  throw std::runtime_error("the limit's file cannot be written");
                }
              },
          .prepare = [last] { last->prepareFile(); }};
}

// Reads the file's bytes, and nothing else.
Turn readLimitTurn(const Last& last) {
  return {.run =
              [last, block = std::vector<char>(std::size_t{256} * 1024)]() mutable {
                const FileDescriptor file(::open(last->path().c_str(), O_RDONLY | O_CLOEXEC));
                while (::read(file.number(), block.data(), block.size()) > 0) {
                  benchmark::DoNotOptimize(block.data());
                }
              },
          .prepare = [last] { last->prepareFile(); }};
}

class Registration {
 public:
  Registration(BenchData& data, const RecordKind& kind, const char* verb, Operation operation)
      : data_(data), kind_(kind), family_(kind.name + "_" + verb + "/"), operation_(operation) {}

  void add(const char* who, const std::function<Turn(const Last&)>& turnOf) const {
    registerTurns(nameOf(family_ + who, kRecords), kTurns,
                  [&data = data_, &kind = kind_, operation = operation_, turnOf] {
                    return turnOf(std::make_shared<LastRecord>(data, kind, operation));
                  });
  }

 private:
  BenchData& data_;
  const RecordKind& kind_;
  std::string family_;
  Operation operation_;
};

void registerReading(const Registration& registration) {
  registration.add("file", [](const Last& last) { return fileTurn(last, Sync::Yes); });
  registration.add("sqlite", [](const Last& last) { return sqliteTurn(last, Synchronous::Full); });
  registration.add("limit_read_bytes", readLimitTurn);
}

void registerWriting(const Registration& registration) {
  registration.add("file_synced", [](const Last& last) { return fileTurn(last, Sync::Yes); });
  registration.add("sqlite_wal_full",
                   [](const Last& last) { return sqliteTurn(last, Synchronous::Full); });
  registration.add("limit_write_and_sync", writeLimitTurn);
  registration.add("file_unsynced", [](const Last& last) { return fileTurn(last, Sync::No); });
  registration.add("sqlite_wal_off",
                   [](const Last& last) { return sqliteTurn(last, Synchronous::Off); });
}

}  // namespace

void registerRecordBenchmarks(BenchData& data) {
  for (const RecordKind* const kind : {&notesKind(), &userIDPasswordKind()}) {
    registerReading({data, *kind, "find", Operation::Find});
    registerWriting({data, *kind, "replace", Operation::Replace});
    registerWriting({data, *kind, "remove", Operation::Remove});
  }
  // Saving a purchase never replaces an existing one.
  registerReading({data, purchaseKind(), "find", Operation::Find});
  registerWriting({data, purchaseKind(), "append", Operation::Append});
  registerWriting({data, purchaseKind(), "remove", Operation::Remove});
}

}  // namespace quorrix::bench
