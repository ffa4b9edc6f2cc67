// Runs the benchmarks. Prints the medians, the aims, and how the time of a visit grows.
// Accepts Google Benchmark's options, such as --benchmark_filter=visit.
#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "aims.h"
#include "bench_data.h"
#include "benchmarks.h"
#include "median_reporter.h"

namespace {

using namespace quorrix::bench;

void run() {
  BenchData data;
  benchmark::AddCustomContext("data folder", data.folder().string());
  benchmark::AddCustomContext("file system", storageUnder(data.folder()));
  benchmark::AddCustomContext("figures", "medians of at least " + std::to_string(kRepetitions) +
                                             " repetitions, files in the system's cache");
  registerLoadBenchmarks(data);
  registerVisitBenchmarks(data);
  registerRecordBenchmarks(data);
  registerDeletionBenchmarks(data);
  registerArchiveBenchmarks(data);
  registerSearchBenchmarks(data);
  registerDataToolBenchmarks(data);
  registerViewBenchmarks(data);
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::ClearRegisteredBenchmarks();
  printAims(std::cout, reporter.medians());
  printGrowth(std::cout, reporter.medians());
}

}  // namespace

int main(int argc, char** argv) {
  // The contestants take turns, repetition by repetition, so that a machine that is busy
  // for a while slows all of them. The caller's own arguments take precedence.
  std::string turns = "--benchmark_enable_random_interleaving=true";
  std::vector<char*> arguments(argv, argv + argc);
  arguments.insert(arguments.begin() + 1, turns.data());
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  try {
    run();
  } catch (const std::exception& error) {
    std::cerr << "The benchmarks ended early: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
