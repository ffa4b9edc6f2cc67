// Waiting for what another thread or program does, without guessing how long it takes.
#pragma once

#include <chrono>
#include <thread>

namespace quorrix::test {

// Returns true as soon as `condition` holds, and false if it still does not hold at the
// deadline, which is long enough for the slowest machine.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition,
                              std::chrono::seconds deadline = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + deadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::yield();
  }
  return true;
}

}  // namespace quorrix::test
