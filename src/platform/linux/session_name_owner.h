// Finds which process owns a name on the session bus, such as "org.gnome.Epiphany". It
// asks in the background, over as many passes as it takes.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/linux/bus_connection.h"

namespace quorrix {

class SessionNameOwner {
 public:
  SessionNameOwner(Clock& clock, std::string name) : clock_(clock), name_(std::move(name)) {}

  // Continues; asks again once the last question is answered and a second old. Never
  // waits.
  void advance();

  // As of the last answer: 0 if no process owns the name, nullopt while nothing is known.
  // An answer is valid until the next one, or until the session bus goes away.
  [[nodiscard]] std::optional<std::uint32_t> processId() const { return processId_; }

 private:
  Clock& clock_;
  std::string name_;
  std::unique_ptr<BusConnection> connection_;
  PendingCall call_;
  std::chrono::milliseconds nextAsk_{};
  std::optional<std::uint32_t> processId_;
};

}  // namespace quorrix
