// Sends questions to the programs on the accessibility bus and waits for their answers,
// never longer than the caller allows. An answer that arrives after its pass is not lost:
// it completes its question then. A program that was late is not waited for until it owes
// no more answers, so a slow program costs the others no time. Finds the bus, and finds
// it again after it went away. To be used from one thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/deadline.h"
#include "platform/linux/accessibility_service.h"
#include "platform/linux/bus_connection.h"
#include "platform/linux/question.h"

namespace quorrix {

class AccessibilityBus {
 public:
  explicit AccessibilityBus(Clock& clock);

  // Call it at the start of each pass. Maintains the connections and reads what arrived
  // since the last pass. True if the bus can be asked.
  [[nodiscard]] bool beginPass(const Deadline& deadline);

  // Sends a question. The answer is available once the call is completed; destroying the
  // call discards the answer.
  [[nodiscard]] std::shared_ptr<PendingCall> send(const Question& question);

  // Waits for the next answer. False if `deadline` has passed, or if no program that is
  // waited for owes one.
  [[nodiscard]] bool awaitAnswer(const Deadline& deadline);

  // Increases with every new connection. Names from an earlier connection mean nothing
  // after that.
  [[nodiscard]] unsigned connectionNumber() const { return connectionNumber_; }

  // Makes the session's programs accessible, in this pass or a later one, and
  // again whenever the bus comes back.
  void switchAccessibilityOn();
  [[nodiscard]] bool isSwitchedOn() const { return service_.isSwitchedOn(); }

  // Since the program began.
  [[nodiscard]] std::uint64_t callsSent() const { return callsSent_; }

 private:
  struct Owed {
    std::weak_ptr<PendingCall> call;
    std::string peer;
    bool isLate = false;  // its pass is over
  };

  void connect();
  void connectTo(const std::string& address);
  void introduce(const Deadline& deadline);
  void disconnect();
  [[nodiscard]] bool forgetWhatIsAnswered();
  [[nodiscard]] bool isWaitWorthwhile() const;

  Clock& clock_;
  AccessibilityService service_;
  std::unique_ptr<BusConnection> connection_;
  std::vector<Owed> owed_;
  std::optional<std::chrono::milliseconds> lastAttempt_;
  bool wantsAccessibility_ = false;
  bool owesIntroduction_ = false;
  unsigned connectionNumber_ = 0;
  std::uint64_t callsSent_ = 0;
};

}  // namespace quorrix
