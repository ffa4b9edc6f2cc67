// A clock that a test sets. Waiting takes no time: each call of elapsed() moves the clock
// on by the step that the test chose.
#pragma once

#include "platform/clock.h"

namespace quorrix::test {

class FakeClock final : public Clock {
 public:
  FakeClock() = default;
  explicit FakeClock(const LocalDateTime& moment) : now_(moment) {}

  void set(const LocalDateTime& moment) { now_ = moment; }
  void advance(std::chrono::milliseconds time) { elapsed_ += time; }
  void advanceWheneverAsked(std::chrono::milliseconds step) { step_ = step; }

  [[nodiscard]] LocalDateTime now() override { return now_; }

  [[nodiscard]] std::chrono::milliseconds elapsed() override {
    const auto answer = elapsed_;
    elapsed_ += step_;
    return answer;
  }

 private:
  LocalDateTime now_{.year = 2026, .month = 7, .day = 9, .hour = 15, .minute = 4, .second = 5};
  std::chrono::milliseconds elapsed_{0};
  std::chrono::milliseconds step_{0};
};

}  // namespace quorrix::test
