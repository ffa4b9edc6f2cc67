// The computer's clock, in the user's time zone.
#pragma once

#include "platform/clock.h"

namespace quorrix {

class SystemClock final : public Clock {
 public:
  [[nodiscard]] LocalDateTime now() override;
  [[nodiscard]] std::chrono::milliseconds elapsed() override;
};

}  // namespace quorrix
