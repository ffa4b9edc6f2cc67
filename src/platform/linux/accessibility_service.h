// The service `org.a11y.Bus` on the session bus: tells where the accessibility bus
// is, and holds the session's switch that makes browsers put their windows on it.
// Its errands take as many passes as they need, since the service may first have
// to be started, and the connection lasts only as long as there is an errand.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/linux/bus_connection.h"
#include "platform/linux/deadline.h"

namespace quorrix {

class AccessibilityService {
 public:
  explicit AccessibilityService(Clock& clock) : clock_(clock) {}

  // Each starts an errand; one that is under way already is not doubled. An errand
  // that fails is tried again about every half second until it has succeeded.
  void requestBusAddress() { addressWanted_ = true; }
  void requestSwitchOn() { switchOnWanted_ = true; }

  // Goes on with the errands. Waits until `deadline` at most, and not at all while
  // the session bus or the service still owes an answer from an earlier pass.
  void advance(const Deadline& deadline);

  // The answer to requestBusAddress(), handed over once.
  [[nodiscard]] std::optional<std::string> takeBusAddress();

  [[nodiscard]] bool isSwitchedOn() const { return switchedOn_; }

 private:
  [[nodiscard]] bool hasErrand() const { return addressWanted_ || switchOnWanted_; }
  [[nodiscard]] bool isDue() const;
  void connectWhenDue();
  void sendWhatIsDue();
  void readAnswers();
  void readAddress(const Message& answer);
  void readSwitch(const Message& answer);
  void fail();
  void disconnect();

  Clock& clock_;
  std::unique_ptr<BusConnection> connection_;
  std::optional<std::chrono::milliseconds> lastFailure_;
  bool addressWanted_ = false;
  bool switchOnWanted_ = false;
  bool switchIsOff_ = false;  // as the service has just said
  bool switchedOn_ = false;
  bool owesAnswer_ = false;
  std::optional<std::string> address_;
  PendingCall addressCall_;
  PendingCall readSwitchCall_;
  PendingCall setSwitchCall_;
};

}  // namespace quorrix
