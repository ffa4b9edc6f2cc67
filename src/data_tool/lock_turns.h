// Takes turns with Quorrix in using a file: how long to wait while another program has it locked,
// and when to leave it unlocked. Quorrix polls, so a file that is opened again at once after every
// block would stay locked for it, however short each lock is.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "platform/deferred_signals.h"
#include "platform/lock_patience.h"

namespace quorrix {

// How long to try to open a file that another program has locked.
inline constexpr std::chrono::seconds kReadPatience{5};

// A test replaces the clock.
struct LockTiming {
  using Clock = std::chrono::steady_clock;

  std::chrono::milliseconds patience = kReadPatience;
  std::function<Clock::time_point()> now = Clock::now;
  std::function<void(std::chrono::milliseconds)> sleep = [](std::chrono::milliseconds time) {
    std::this_thread::sleep_for(time);
  };
};

class LockTurns {
 public:
  // Longer than the pause between two attempts of Quorrix.
  static constexpr std::chrono::milliseconds kPause = kLockRetryPause * 3 / 2;

  // A pause after so much time costs a sixth of the speed, and gives Quorrix several chances
  // before its kLockPatience is over.
  static constexpr std::chrono::milliseconds kLongestTurn = kLockPatience / 4;

  // `signals` may be null; otherwise it must outlive this.
  explicit LockTurns(LockTiming timing = {}, const DeferredSignals* signals = nullptr);

  // Call this between two reads, while no file is open. Pauses if the last pause was kLongestTurn
  // or more ago.
  void betweenReads();

  // Call this after a failed attempt to lock several files.
  void pause();

  // Calls `attempt` until it returns true, at least once. Returns false once the patience has run
  // out. Throws EndRequested if a signal has arrived.
  template <typename Attempt>
  [[nodiscard]] bool succeeds(Attempt attempt) const {
    const auto deadline = timing_.now() + timing_.patience;
    while (true) {
      throwIfInterrupted();
      if (attempt()) return true;
      if (timing_.now() >= deadline) return false;
    }
  }

  void throwIfInterrupted() const;

 private:
  LockTiming timing_;
  const DeferredSignals* signals_;
  LockTiming::Clock::time_point lastPause_;
};

}  // namespace quorrix
