// The event pump of a form on the screen. Pending window events run as in the program. A
// pause takes no time but moves a fake clock on. In each pump and pause, a test can act
// as the user would.
#pragma once

#include <QCoreApplication>
#include <chrono>
#include <functional>
#include <utility>

#include "platform/event_pump.h"
#include "support/counting_event_pump.h"
#include "support/fake_clock.h"

namespace quorrix::test {

class FormEventPump final : public EventPump {
 public:
  static constexpr std::chrono::milliseconds kPause{100};

  explicit FormEventPump(FakeClock& clock) : clock_(clock) {}

  // Runs in every pause, with its number counted from 1.
  void atEachPause(std::function<void(int pause)> action) { eachPause_ = std::move(action); }

  // Runs `action` in the n-th processPending, counted from 1.
  void atPump(int n, std::function<void()> action) { pumps_.atPump(n, std::move(action)); }

  [[nodiscard]] int pumps() const { return pumps_.pumps(); }
  [[nodiscard]] int pauses() const { return pumps_.pauses(); }

  void processPending() override {
    QCoreApplication::processEvents();
    pumps_.processPending();
  }

  void pause(std::chrono::milliseconds time) override {
    pumps_.pause(time);
    clock_.advance(kPause);
    QCoreApplication::processEvents();
    if (eachPause_) eachPause_(pumps_.pauses());
  }

 private:
  FakeClock& clock_;
  CountingEventPump pumps_;
  std::function<void(int)> eachPause_;
};

}  // namespace quorrix::test
