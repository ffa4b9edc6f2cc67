// Runs the benchmarks and prints medians, the aims, and how visits grow. Takes
// Google Benchmark's options, such as --benchmark_filter=visit.
#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>

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
  benchmark::AddCustomContext("figures", "medians of " + std::to_string(kRepetitions) +
                                             " repetitions, files in the system's cache");
  registerLoadBenchmarks(data);
  registerVisitBenchmarks(data);
  registerViewBenchmarks(data);
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::ClearRegisteredBenchmarks();
  printAims(std::cout, reporter.medians());
  printGrowth(std::cout, reporter.medians());
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  try {
    run();
  } catch (const std::exception& error) {
    std::cerr << "The benchmarks ended early: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
