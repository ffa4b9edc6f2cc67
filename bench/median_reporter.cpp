#include "median_reporter.h"

namespace quorrix::bench {

void MedianReporter::ReportRuns(const std::vector<Run>& runs) {
  std::vector<Run> shown;
  for (const Run& run : runs) {
    if (run.error_occurred) shown.push_back(run);
    if (run.aggregate_name != "median") continue;
    shown.push_back(run);
    // An aggregate's time is a sum over as many iterations as there are repetitions.
    const double seconds =
        run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    Median& median = medians_[run.run_name.function_name];
    median.seconds = seconds;
    for (const auto& [name, counter] : run.counters) median.counters[name] = counter.value;
  }
  if (!shown.empty()) ConsoleReporter::ReportRuns(shown);
}

}  // namespace quorrix::bench
