// Shows the median of each benchmark's repetitions and nothing else, and keeps
// the medians for the table of aims.
#pragma once

#include <benchmark/benchmark.h>

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

  [[nodiscard]] const Medians& medians() const { return medians_; }

 private:
  Medians medians_;
};

}  // namespace quorrix::bench
