#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <random>
#include <stdexcept>

#include "benchmarks.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_file_system.h"
#include "platform/system_clock.h"
#include "sitetree/access_stamp.h"
#include "sitetree/site_file.h"
#include "sqlite_site_table.h"
#include "unsynced_file_system.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kCounts[] = {10'000, 100'000, 1'000'000};  // of records

// So many that the places in the file average out, and that SQLite comes to
// carry its log over into the database within a repetition.
constexpr int kVisits = 1000;
constexpr int kSearches = 100;

// Calls `visit` with one random record number, counted from 0, per iteration. Every
// repetition goes on where the last one ended; all contestants get the same numbers.
template <typename Visit>
void measureVisits(benchmark::State& state, std::mt19937_64& random, std::size_t count,
                   Visit visit) {
  for ([[maybe_unused]] auto _ : state) visit(static_cast<std::size_t>(random() % count));
}

void visitSiteFile(benchmark::State& state, BenchData& data, std::size_t count, FileSystem& files,
                   std::mt19937_64& random) {
  const WorkingPaths paths = data.siteFile(count);
  const AddressList& addresses = data.addresses(count);
  SystemClock clock;
  SiteFile siteFile(files, clock, paths);
  SiteTree tree;
  siteFile.loadNodes(tree);
  // As tracking does it: the address is looked up in the tree, whose node knows
  // where the record was.
  measureVisits(state, random, count, [&](std::size_t number) {
    const NodeId node = tree.at(addresses[number]);
    siteFile.updateSiteRecord(addresses[number], 'S', tree.recordNumber(node));
  });
}

// With nothing known about where the record is, the file is searched.
void searchSiteFile(benchmark::State& state, BenchData& data, std::size_t count,
                    std::mt19937_64& random) {
  const WorkingPaths paths = data.siteFile(count);
  const AddressList& addresses = data.addresses(count);
  PosixFileSystem files;
  SystemClock clock;
  measureVisits(state, random, count, [&](std::size_t number) {
    SiteFile(files, clock, paths).updateSiteRecord(addresses[number], 'S');
  });
}

void visitSqliteTable(benchmark::State& state, BenchData& data, std::size_t count,
                      SqliteSiteTable::Synchronous synchronous, std::mt19937_64& random) {
  const AddressList& addresses = data.addresses(count);
  SqliteSiteTable table(data.database(count), synchronous);
  SystemClock clock;
  measureVisits(state, random, count, [&](std::size_t number) {
    table.upsert(addresses[number], 'S', accessStampText(clock.now()) + kStampEnd);
  });
}

// What no program that keeps its word about the disk can be faster than.
void writeAndSync(benchmark::State& state, BenchData& data, std::size_t count,
                  std::mt19937_64& random) {
  const Path path = data.siteFile(count).currentNodesFile;
  const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  SiteRecord record;
  measureVisits(state, random, count, [&](std::size_t number) {
    const auto offset = static_cast<off_t>(number * site_record::kLength);
    if (::pread(file.number(), record.data(), record.size(), offset) < 0 ||
        ::pwrite(file.number(), record.data(), record.size(), offset) < 0 ||
        ::fdatasync(file.number()) != 0) {
      throw std::runtime_error("the limit's file cannot be written");
    }
  });
}

template <typename Run>
void registerOne(const std::string& name, int visits, Run run) {
  const auto random = std::make_shared<std::mt19937_64>(1);
  benchmark::RegisterBenchmark(name.c_str(),
                               [run, random](benchmark::State& state) { run(state, *random); })
      ->Unit(benchmark::kMicrosecond)
      ->UseRealTime()
      ->Iterations(visits)
      ->Repetitions(kRepetitions)
      ->ReportAggregatesOnly(true);
}

}  // namespace

void registerVisitBenchmarks(BenchData& data) {
  for (const std::size_t count : kCounts) {
    registerOne(nameOf("visit/site_file_synced", count), kVisits,
                [&data, count](auto& state, auto& random) {
                  PosixFileSystem files;
                  visitSiteFile(state, data, count, files, random);
                });
    registerOne(
        nameOf("visit/site_file_searched", count), kSearches,
        [&data, count](auto& state, auto& random) { searchSiteFile(state, data, count, random); });
    registerOne(nameOf("visit/sqlite_wal_full", count), kVisits,
                [&data, count](auto& state, auto& random) {
                  visitSqliteTable(state, data, count, SqliteSiteTable::Synchronous::Full, random);
                });
    registerOne(
        nameOf("visit/limit_write_and_sync", count), kVisits,
        [&data, count](auto& state, auto& random) { writeAndSync(state, data, count, random); });
    registerOne(nameOf("visit/site_file_unsynced", count), kVisits,
                [&data, count](auto& state, auto& random) {
                  PosixFileSystem real;
                  UnsyncedFileSystem files(real);
                  visitSiteFile(state, data, count, files, random);
                });
    registerOne(nameOf("visit/sqlite_wal_off", count), kVisits,
                [&data, count](auto& state, auto& random) {
                  visitSqliteTable(state, data, count, SqliteSiteTable::Synchronous::Off, random);
                });
  }
}

}  // namespace quorrix::bench
