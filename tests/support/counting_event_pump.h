// An event pump without events: it counts its calls, and at chosen ones does what the
// user would do in the windows at that time, such as choosing Stop Tracking.
#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <utility>

#include "platform/event_pump.h"

namespace quorrix::test {

class CountingEventPump final : public EventPump {
 public:
  // Runs `action` in the n-th processPending, counted from 1.
  void atPump(int n, std::function<void()> action) { actions_[n] = std::move(action); }

  // Runs in every processPending, with its number, before the action of atPump.
  void atEachPump(std::function<void(int pump)> action) { eachTime_ = std::move(action); }

  [[nodiscard]] int pumps() const { return pumps_; }
  [[nodiscard]] int pauses() const { return pauses_; }

  void processPending() override {
    // A loop that is never stopped must fail its test, not hang it.
    if (pumps_ == kEndless) throw std::logic_error("the loop goes on for ever");
    const int pump = ++pumps_;
    if (eachTime_) eachTime_(pump);
    const auto action = actions_.find(pump);
    if (action != actions_.end()) action->second();
  }

  void pause(std::chrono::milliseconds /*time*/) override { ++pauses_; }

 private:
  static constexpr int kEndless = 10'000;

  std::map<int, std::function<void()>> actions_;
  std::function<void(int)> eachTime_;
  int pumps_ = 0;
  int pauses_ = 0;
};

}  // namespace quorrix::test
