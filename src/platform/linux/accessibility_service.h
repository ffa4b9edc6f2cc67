// Client of the service `org.a11y.Bus` on the session bus. The service knows the address
// of the accessibility bus, and holds the session's switch that makes browsers put their
// windows on it. A request takes as many passes as it needs, since the service may have
// to be started first. The connection exists only while there is a request.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/deadline.h"
#include "platform/linux/bus_connection.h"

namespace quorrix {

class AccessibilityService {
 public:
  explicit AccessibilityService(Clock& clock) : clock_(clock) {}

  // Each starts a request, unless the same one is already under way. A request that fails
  // is retried about every half second until it succeeds.
  void requestBusAddress() { addressWanted_ = true; }
  void requestSwitchOn() { switchOnWanted_ = true; }

  // Continues the requests. Waits until `deadline` at most, and not at all while the
  // session bus or the service still owes an answer from an earlier pass.
  void advance(const Deadline& deadline);

  // The answer to requestBusAddress(), returned only once.
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
  bool switchIsOff_ = false;  // according to the service's last answer
  bool switchedOn_ = false;
  bool owesAnswer_ = false;
  std::optional<std::string> address_;
  PendingCall addressCall_;
  PendingCall readSwitchCall_;
  PendingCall setSwitchCall_;
};

}  // namespace quorrix
