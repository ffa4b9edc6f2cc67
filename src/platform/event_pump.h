// Lets the user interface breathe while a handler is still running: everything
// is in one thread, so a loop that does not pump freezes the window.
#pragma once

namespace quorrix {

class EventPump {
 public:
  virtual ~EventPump() = default;

  // Handles every window event that is pending, then returns.
  virtual void processPending() = 0;

  // Goes on handling events for a short while; returns early when the program ends.
  virtual void pause() = 0;
};

}  // namespace quorrix
