// Shows only the median of each benchmark's repetitions, and errors. Shows them at the
// end in the order of registration, because contestants that take turns finish in any
// order. Keeps the medians for the table of aims.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quorrix::bench {

struct Median {
  double seconds = 0;
  std::map<std::string, double> counters;
};

using Medians = std::map<std::string, Median>;  // by "family/who/size"

class MedianReporter final : public benchmark::ConsoleReporter {
 public:
  // In colour on a terminal.
  MedianReporter();

  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  [[nodiscard]] const Medians& medians() const { return medians_; }

 private:
  Medians medians_;
  std::map<std::int64_t, std::vector<Run>> shown_;  // by the order of registration
};

}  // namespace quorrix::bench
