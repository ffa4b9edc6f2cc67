#include "median_reporter.h"

#include <unistd.h>

namespace quorrix::bench {

MedianReporter::MedianReporter()
    : ConsoleReporter(::isatty(STDOUT_FILENO) == 1 ? OO_ColorTabular : OO_Tabular) {}

void MedianReporter::ReportRuns(const std::vector<Run>& runs) {
  std::vector<Run> shown;
  for (const Run& run : runs) {
    if (run.error_occurred) shown.push_back(run);
    if (run.aggregate_name != "median") continue;
    shown.push_back(run);
    const double seconds =
        run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    Median& median = medians_[run.run_name.function_name];
    median.seconds = seconds;
    for (const auto& [name, counter] : run.counters) median.counters[name] = counter.value;
  }
  if (!shown.empty()) ConsoleReporter::ReportRuns(shown);
}

}  // namespace quorrix::bench
