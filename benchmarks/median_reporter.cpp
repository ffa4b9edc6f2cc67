#include "median_reporter.h"

#include <unistd.h>

namespace quorrix::bench {

MedianReporter::MedianReporter()
    : ConsoleReporter(::isatty(STDOUT_FILENO) == 1 ? OO_ColorTabular : OO_Tabular) {}

void MedianReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.error_occurred) shown_[run.family_index].push_back(run);
    if (run.aggregate_name != "median") continue;
    shown_[run.family_index].push_back(run);
    Median& median = medians_[run.run_name.function_name];
    median.seconds = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    for (const auto& [name, counter] : run.counters) median.counters[name] = counter.value;
  }
}

void MedianReporter::Finalize() {
  for (const auto& [order, runs] : shown_) ConsoleReporter::ReportRuns(runs);
}

}  // namespace quorrix::bench
