#include "turns.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <thread>

namespace quorrix::bench {
namespace {

// Operations come one by one. In a burst, a write can find the file's times set by the
// one just before it, and its sync has less to do than that of a lone one.
constexpr std::chrono::milliseconds kPause{5};

}  // namespace

void registerTurns(const std::string& name, int repetitions, const std::function<Turn()>& make) {
  benchmark::RegisterBenchmark(
      name.c_str(),
      [make, turn = std::optional<Turn>()](benchmark::State& state) mutable {
        if (!turn) turn = make();
        for ([[maybe_unused]] auto _ : state) {
          turn->prepare();
          ::sync();  // what others have left unwritten is not for this one's sync to write
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
