// Keeps the user interface responsive while a handler is still running. Everything runs
// in one thread, so a loop that does not pump events freezes the window.
#pragma once

#include <chrono>

namespace quorrix {

class EventPump {
 public:
  virtual ~EventPump() = default;

  // Handles every window event that is pending, then returns.
  virtual void processPending() = 0;

  // Handles events for `time`; returns early when the program ends.
  virtual void pause(std::chrono::milliseconds time) = 0;
};

}  // namespace quorrix
