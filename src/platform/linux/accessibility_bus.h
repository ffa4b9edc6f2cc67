// Asks the programs on the accessibility bus, several questions at a time, and
// never waits longer than the caller allows: a program or bus that misses a
// deadline is left alone until what it owes arrives. Finds the bus, and finds it
// again after it went away. One per AccessibleWindowSystem; one thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/linux/accessibility_service.h"
#include "platform/linux/bus_connection.h"
#include "platform/linux/deadline.h"

namespace quorrix {

struct Answer {
  enum class Outcome {
    Answered,
    Refused,  // an error, or the program is gone
    Late,     // not known: it did not answer in time or was not asked
  };
  Outcome outcome = Outcome::Late;
  Message message;  // null unless Answered
};

class AccessibilityBus {
 public:
  explicit AccessibilityBus(Clock& clock);

  // Call it at the start of each pass: keeps the connections alive and takes in
  // what arrived since the pass before. True when the bus can be asked.
  [[nodiscard]] bool beginPass(const Deadline& deadline);

  // Sends all of `calls` at once; the answers are in the order of the calls.
  [[nodiscard]] std::vector<Answer> ask(std::span<const Message> calls, const Deadline& deadline);

  // Goes up whenever the bus is connected anew: every name of an earlier
  // connection then means nothing any more.
  [[nodiscard]] unsigned connectionNumber() const { return connectionNumber_; }

  // Makes the session's programs accessible, in this pass or a later one, and
  // again whenever the bus comes back.
  void switchAccessibilityOn();

  // Since the program began.
  [[nodiscard]] std::uint64_t callsSent() const { return callsSent_; }

 private:
  struct Peer {
    std::vector<PendingCall> owed;  // questions whose deadline has passed
    int misses = 0;                 // passes in a row in which it was late
    std::chrono::milliseconds restUntil{};
    bool wasLate = false;  // in this pass
    bool wasInTime = false;
  };

  void connect();
  void connectTo(const std::string& address);
  void introduce(const Deadline& deadline);
  void disconnect();
  void judgePeers();
  [[nodiscard]] bool isAskable(const std::string& name) const;
  void await(std::span<const PendingCall> pending, const Deadline& deadline);

  Clock& clock_;
  AccessibilityService service_;
  std::unique_ptr<BusConnection> connection_;
  std::map<std::string, Peer, std::less<>> peers_;  // only those that were ever late
  std::optional<std::chrono::milliseconds> lastAttempt_;
  bool wantsAccessibility_ = false;
  bool owesIntroduction_ = false;
  unsigned connectionNumber_ = 0;
  std::uint64_t callsSent_ = 0;
};

}  // namespace quorrix
