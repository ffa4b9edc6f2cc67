#include "benchmarks.h"

namespace quorrix::bench {

void registerViewBenchmarks(BenchData&) {}

}  // namespace quorrix::bench
