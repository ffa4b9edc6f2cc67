// The current time, as the program sees it. The real clock is in system_clock.h; tests
// use their own.
#pragma once

#include <chrono>

namespace quorrix {

// A local wall-clock time: month and day count from 1, hours run from 0 to 23, and the
// year is given in full.
struct LocalDateTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;

  [[nodiscard]] virtual LocalDateTime now() = 0;

  // Time since some fixed moment; never jumps when the wall clock is set.
  [[nodiscard]] virtual std::chrono::milliseconds elapsed() = 0;
};

}  // namespace quorrix
