// What main() registers: one function per family of benchmarks. Names read
// "family/who/size", and all of one family and size do the same work.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#include "bench_data.h"
#include "sizes.h"

namespace quorrix::bench {

inline constexpr int kRepetitions = timed(5);  // the median of which is reported

// A site file into the tree.
void registerLoadBenchmarks(BenchData& data);

// One visit to a known address into the site file.
void registerVisitBenchmarks(BenchData& data);

// Finding, saving and removing the last of as many records as a record file can number.
void registerRecordBenchmarks(BenchData& data);

// A host with a fifth of all sites out of four files.
void registerDeletionBenchmarks(BenchData& data);

// Four files of the usual sizes into an archive and back.
void registerArchiveBenchmarks(BenchData& data);

// A text, a day or both in the site file, and an address in the tree.
void registerSearchBenchmarks(BenchData& data);

// Expanding the tree's view; nothing in a build without the forms.
void registerViewBenchmarks(BenchData& data);

[[nodiscard]] inline std::string nameOf(const std::string& familyAndWho, std::size_t size) {
  return familyAndWho + "/" + std::to_string(size);
}

}  // namespace quorrix::bench
