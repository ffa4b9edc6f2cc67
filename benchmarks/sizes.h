// The amount of data and the number of repetitions. The build for the tests uses a
// hundredth of both, because there it only matters that every benchmark runs, not what it
// measures. A median needs at least two repetitions.
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
