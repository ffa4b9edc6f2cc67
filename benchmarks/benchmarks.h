// The functions that register the benchmarks, called by main(). A name has the form
// "family/who/size"; all benchmarks of one family and size do the same work.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#include "bench_data.h"
#include "platform/code_page.h"
#include "sizes.h"

namespace quorrix::bench {

// The code page in which the text of the benchmarks is stored.
inline const CodePage& westernCodePage() {
  static const CodePage codePage(1252);
  return codePage;
}

inline constexpr int kRepetitions = timed(5);  // their median is reported

// Loading a site file into the tree.
void registerLoadBenchmarks(BenchData& data);

// Recording one visit to a known address in the site file.
void registerVisitBenchmarks(BenchData& data);

// Finding, saving and removing the last record of a record file of the maximum size.
void registerRecordBenchmarks(BenchData& data);

// Deleting a fifth of all sites from four files.
void registerDeletionBenchmarks(BenchData& data);

// Moving four files of the usual sizes into an archive, and loading it.
void registerArchiveBenchmarks(BenchData& data);

// Searching the site file for a text, a day or both, and finding an address in the tree.
void registerSearchBenchmarks(BenchData& data);

// Listing, searching, checking and exporting with quorrix-data.
void registerDataToolBenchmarks(BenchData& data);

// Using the tree's view and the list of results. Registers nothing in a build without the
// forms.
void registerViewBenchmarks(BenchData& data);

[[nodiscard]] inline std::string nameOf(const std::string& familyAndWho, std::size_t size) {
  return familyAndWho + "/" + std::to_string(size);
}

}  // namespace quorrix::bench
