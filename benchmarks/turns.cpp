#include "turns.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <thread>

namespace quorrix::bench {
namespace {

// In real use operations come one by one. In a burst, the previous write may already have
// set the file's times, so that the sync has less to do than after a single write.
constexpr std::chrono::milliseconds kPause{5};

}  // namespace

void registerTurns(const std::string& name, int repetitions, const std::function<Turn()>& make) {
  benchmark::RegisterBenchmark(
      name.c_str(),
      [make, turn = std::optional<Turn>()](benchmark::State& state) mutable {
        if (!turn) turn = make();
        for ([[maybe_unused]] auto _ : state) {
          turn->prepare();
          ::sync();  // so that this turn's sync does not write what others left
          std::this_thread::sleep_for(kPause);
          const auto start = std::chrono::steady_clock::now();
          turn->run();
          const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
          state.SetIterationTime(taken.count());
        }
      })
      ->Unit(benchmark::kMicrosecond)
      ->UseManualTime()
      ->Iterations(1)
      ->Repetitions(repetitions)
      ->ReportAggregatesOnly(true);
}

}  // namespace quorrix::bench
