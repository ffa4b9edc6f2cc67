// The end of a wait. It uses the steady clock and not the program's Clock: waiting in
// poll() takes real time, even if a test stops Clock.
#pragma once

#include <algorithm>
#include <chrono>

namespace quorrix {

class Deadline {
 public:
  explicit Deadline(std::chrono::microseconds fromNow)
      : end_(std::chrono::steady_clock::now() + fromNow) {}

  // Rounded up to whole milliseconds, the unit of poll(); 0 once it has passed.
  [[nodiscard]] std::chrono::milliseconds left() const {
    const auto rest = end_ - std::chrono::steady_clock::now();
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(rest),
                    std::chrono::milliseconds::zero());
  }

  [[nodiscard]] bool hasPassed() const { return std::chrono::steady_clock::now() >= end_; }

 private:
  std::chrono::steady_clock::time_point end_;
};

}  // namespace quorrix
