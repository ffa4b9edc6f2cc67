// The present, as the program sees it. Real: system_clock.h. Tests set their own.
#pragma once

#include <chrono>

namespace quorrix {

// A local wall-clock time, as a calendar shows it: month and day count from 1,
// the hour from 0 to 23, the year has all its digits.
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
