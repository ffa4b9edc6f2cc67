// Lets Qt's pending events run from inside a handler.
#pragma once

#include "platform/event_pump.h"

namespace quorrix {

class QtEventPump final : public EventPump {
 public:
  void processPending() override;
  void pause(std::chrono::milliseconds time) override;
};

}  // namespace quorrix
