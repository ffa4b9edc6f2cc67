#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <vector>

#include "benchmarks.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/posix_file_system.h"
#include "platform/system_clock.h"
#include "sitetree/site_file.h"
#include "sqlite_site_table.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kCounts[] = {sized(100'000), sized(1'000'000)};  // of records
constexpr std::size_t kLimitBlock = std::size_t{1024} * 1024;

// Bytes that the program has allocated with malloc, including malloc's bookkeeping.
std::size_t allocatedBytes() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// Measures `load` filling a new tree, without the tree's destruction. As in a program
// that starts, every tree begins with memory fresh from the system.
//
// bytes_per_node is the memory that malloc has allocated for the tree, divided by the
// number of nodes. It includes the spare room in the tree's tables and malloc's own
// bookkeeping. It excludes the characters of the addresses, which are all different and
// counted once each.
template <typename Load>
void measureLoading(benchmark::State& state, std::size_t addressBytes, Load load) {
  std::size_t nodes = 0;
  std::size_t treeBytes = 0;
  for ([[maybe_unused]] auto _ : state) {
    malloc_trim(0);
    const std::size_t before = allocatedBytes();
    std::optional<SiteTree> tree(std::in_place);
    const auto start = std::chrono::steady_clock::now();
    load(*tree);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(taken.count());
    nodes = tree->size();
    treeBytes = allocatedBytes() - before - addressBytes;
  }
  state.counters["nodes"] = static_cast<double>(nodes);
  state.counters["bytes_per_node"] = static_cast<double>(treeBytes) / static_cast<double>(nodes);
}

void loadSiteFile(benchmark::State& state, BenchData& data, std::size_t count) {
  const WorkingPaths paths = data.siteFile(count);
  PosixFileSystem files;
  SystemClock clock;
  SiteFile siteFile(files, clock, paths);
  measureLoading(state, data.addresses(count).bytesOf(count),
                 [&](SiteTree& tree) { siteFile.loadNodes(tree); });
}

void loadSqliteTable(benchmark::State& state, BenchData& data, std::size_t count) {
  const auto path = data.database(count);
  measureLoading(state, data.addresses(count).bytesOf(count), [&](SiteTree& tree) {
    SqliteSiteTable table(path, SqliteSiteTable::Synchronous::Full);
    tree.addRoot();
    const SiteTree::BulkChange change(tree);
    tree.reserve(nodesToReserve(table.rowCount()));
    SiteTree::Batch batch(tree);
    std::uint64_t number = 0;
    table.scan([&](std::string_view address, char flag) { batch.add(address, flag, ++number); });
    batch.flush();
  });
}

void readBytes(benchmark::State& state, BenchData& data, std::size_t count) {
  const Path path = data.siteFile(count).currentNodesFile;
  std::vector<char> block(kLimitBlock);
  for ([[maybe_unused]] auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    while (::read(file.number(), block.data(), block.size()) > 0) {
      benchmark::DoNotOptimize(block.data());
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(taken.count());
  }
}

}  // namespace

void registerLoadBenchmarks(BenchData& data) {
  struct Contestant {
    const char* name;
    void (*run)(benchmark::State&, BenchData&, std::size_t);
  };
  constexpr Contestant kContestants[] = {{"load/site_file", loadSiteFile},
                                         {"load/sqlite_scan", loadSqliteTable},
                                         {"load/limit_read_bytes", readBytes}};
  for (const std::size_t count : kCounts) {
    for (const auto& [name, run] : kContestants) {
      benchmark::RegisterBenchmark(
          nameOf(name, count).c_str(),
          [run = run, &data, count](benchmark::State& state) { run(state, data, count); })
          ->Unit(benchmark::kMillisecond)
          ->UseManualTime()
          ->Repetitions(kRepetitions)
          ->ReportAggregatesOnly(true);
    }
  }
}

}  // namespace quorrix::bench
