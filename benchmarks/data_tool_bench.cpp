// quorrix-data as a process, next to the shell of SQLite with the same rows. Its output goes to
// /dev/null. "peak_kib" is the most memory that the process had at one time.
#include <cstdlib>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

#include "benchmarks.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kMany = sized(1'000'000);
constexpr std::size_t kFew = sized(100'000);

// The files are there, so that check finds nothing.
Path dataFolder(BenchData& data, std::size_t sites) {
  const WorkingPaths paths = data.siteFile(sites);
  for (const Path& path :
       {paths.currentURLNotesFile, paths.currentUserIDPasswordFile, paths.currentPurchasesFile}) {
    std::ofstream(path, std::ios::app);
  }
  return paths.loadPath;
}

// Runs the command under time(1), because a process inherits the peak of the one that started it,
// which here would be the benchmark. Returns its own peak in KiB. Throws if it fails.
double peakOf(const std::string& command, const Path& folder) {
  const Path report = folder / "peak";
  const std::string line =
      "/usr/bin/time -f %M -o '" + report.string() + "' " + command + " > /dev/null";
  if (std::system(line.c_str()) != 0) throw std::runtime_error("this command failed: " + command);
  double peak = 0;
  std::ifstream(report) >> peak;
  return peak;
}

void registerCommand(BenchData& data, const char* name, std::size_t sites,
                     const std::function<std::string()>& command) {
  benchmark::RegisterBenchmark(nameOf(name, sites).c_str(),
                               [&data, command](benchmark::State& state) {
                                 const std::string line = command();
                                 double peak = 0;
                                 for ([[maybe_unused]] auto _ : state) {
                                   peak = peakOf(line, data.folder());
                                 }
                                 state.counters["peak_kib"] = peak;
                               })
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Repetitions(kRepetitions)
      ->ReportAggregatesOnly(true);
}

void registerTool(BenchData& data, const char* name, std::size_t sites, const char* arguments) {
  registerCommand(data, name, sites, [&data, sites, arguments] {
    return std::string("'" QUORRIX_DATA_TOOL "' ") + arguments + " --data '" +
           dataFolder(data, sites).string() + "'";
  });
}

void registerPeer(BenchData& data, const char* name, const char* options, const char* query) {
  registerCommand(data, name, kMany, [&data, options, query] {
    return std::string("sqlite3 ") + options + " '" + data.database(kMany).string() + "' \"" +
           query + "\"";
  });
}

}  // namespace

void registerDataToolBenchmarks(BenchData& data) {
  constexpr const char* kAll =
      "SELECT access_stamp, protocol_flag, address FROM site ORDER BY number";
  for (const std::size_t sites : {kFew, kMany}) {
    registerTool(data, "data_list/quorrix_data", sites, "list");
    registerTool(data, "data_search/quorrix_data", sites, "search SITE-NO-007");
    registerTool(data, "data_check/quorrix_data", sites, "check");
    registerTool(data, "data_export/quorrix_data", sites, "export --format json");
  }
  registerPeer(data, "data_list/sqlite_shell", "-list", kAll);
  registerPeer(data, "data_search/sqlite_shell", "-list",
               "SELECT access_stamp, protocol_flag, address FROM site "
               "WHERE address LIKE '%SITE-NO-007%' ORDER BY number");
  registerPeer(data, "data_check/sqlite_shell", "-list", "PRAGMA integrity_check");
  registerPeer(data, "data_export/sqlite_shell", "-json", kAll);
}

}  // namespace quorrix::bench
