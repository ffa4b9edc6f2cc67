// How long opening a file waits for another program to unlock it. A record file is locked
// for the few milliseconds of one operation, so a lock that lasts longer than this will
// not end soon, and the window must not freeze for longer. Both file systems use it.
#pragma once

#include <chrono>
#include <thread>

namespace quorrix {

inline constexpr std::chrono::milliseconds kLockPatience{400};
inline constexpr std::chrono::milliseconds kLockRetryPause{10};

// Calls `attempt` until it returns true, at least once and with a brief pause between
// calls. Returns false once `patience` has run out. It polls, because neither flock nor
// LockFileEx can wait for a limited time.
template <typename Attempt>
[[nodiscard]] bool succeedsWithin(std::chrono::milliseconds patience, Attempt attempt) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!attempt()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(kLockRetryPause);
  }
  return true;
}

}  // namespace quorrix
