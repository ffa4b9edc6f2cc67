// How much data the benchmarks work on, and how often. The build for the tests takes a
// hundredth of both: there it counts that every benchmark runs, not what it measures.
// There is no median of fewer than two repetitions.
#pragma once

#include <algorithm>
#include <cstddef>

namespace quorrix::bench {

#ifdef QUORRIX_BENCH_SMALL
inline constexpr int kShare = 100;
#else
inline constexpr int kShare = 1;
#endif

[[nodiscard]] constexpr std::size_t sized(std::size_t count) { return count / kShare; }

[[nodiscard]] constexpr int timed(int repetitions) { return std::max(repetitions / kShare, 2); }

}  // namespace quorrix::bench
