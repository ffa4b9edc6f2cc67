// The aims of the benchmarks, and how the time of a visit grows with the file.
#pragma once

#include <ostream>

#include "median_reporter.h"

namespace quorrix::bench {

// Prints a line for each aim whose benchmarks were run.
void printAims(std::ostream& out, const Medians& medians);

// Prints how many times longer a visit takes in a file ten times as large.
void printGrowth(std::ostream& out, const Medians& medians);

}  // namespace quorrix::bench
