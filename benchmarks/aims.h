// What the benchmarks are held against, and how a visit's time grows with the file.
#pragma once

#include <ostream>

#include "median_reporter.h"

namespace quorrix::bench {

// Prints a line per aim whose benchmarks were run.
void printAims(std::ostream& out, const Medians& medians);

// Prints how many times longer a visit takes in a file ten times as large.
void printGrowth(std::ostream& out, const Medians& medians);

}  // namespace quorrix::bench
