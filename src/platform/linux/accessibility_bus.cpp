#include "platform/linux/accessibility_bus.h"

#include <algorithm>
#include <cstdlib>

namespace quorrix {
namespace {

constexpr std::chrono::milliseconds kRetryInterval{500};

}  // namespace

AccessibilityBus::AccessibilityBus(Clock& clock) : clock_(clock), service_(clock) {}

bool AccessibilityBus::beginPass(const Deadline& deadline) {
  if (connection_ && !connection_->isOpen()) disconnect();
  if (!connection_) connect();
  service_.advance(deadline);
  if (!connection_) connect();
  if (!connection_) return false;
  introduce(deadline);
  if (!connection_->isOpen()) {
    disconnect();
    return false;
  }
  static_cast<void>(forgetWhatIsAnswered());
  for (Owed& owed : owed_) owed.isLate = true;
  return connection_->isReady();
}

void AccessibilityBus::connect() {
  if (const std::optional<std::string> address = service_.takeBusAddress()) {
    return connectTo(*address);
  }
  const auto now = clock_.elapsed();
  if (lastAttempt_ && now - *lastAttempt_ < kRetryInterval) return;
  lastAttempt_ = now;
  if (const char* given = std::getenv("AT_SPI_BUS_ADDRESS"); given && *given) connectTo(given);
  if (!connection_) service_.requestBusAddress();
}

void AccessibilityBus::connectTo(const std::string& address) {
  lastAttempt_ = clock_.elapsed();
  connection_ = BusConnection::open(address);
  if (!connection_) return;
  owesIntroduction_ = false;
  ++connectionNumber_;
  if (wantsAccessibility_) service_.requestSwitchOn();
}

// Reads what has arrived. Waits only for the answer to a new introduction.
void AccessibilityBus::introduce(const Deadline& deadline) {
  connection_->exchange(std::chrono::milliseconds::zero());
  while (connection_->isOpen() && !connection_->isReady() && !owesIntroduction_) {
    connection_->exchange(deadline.left());
    owesIntroduction_ = deadline.hasPassed();
  }
}

void AccessibilityBus::disconnect() {
  owed_.clear();
  connection_.reset();
}

std::shared_ptr<PendingCall> AccessibilityBus::send(const Question& question) {
  auto call = std::make_shared<PendingCall>();
  if (!connection_ || !connection_->isReady()) return call;
  *call = connection_->send(messageFor(question));
  ++callsSent_;
  owed_.push_back({.call = call, .peer = question.object.peer});
  return call;
}

bool AccessibilityBus::awaitAnswer(const Deadline& deadline) {
  while (connection_ && connection_->isOpen() && isWaitWorthwhile() && !deadline.hasPassed()) {
    connection_->exchange(deadline.left());
    if (forgetWhatIsAnswered()) return true;
  }
  return false;
}

// Whether anything was answered.
bool AccessibilityBus::forgetWhatIsAnswered() {
  bool isAnyAnswered = false;
  std::erase_if(owed_, [&](const Owed& owed) {
    const auto call = owed.call.lock();
    const bool isAnswered = call && isCompleted(*call);
    isAnyAnswered |= isAnswered;
    return !call || isAnswered;
  });
  return isAnyAnswered;
}

// A program that still owes an answer from an earlier pass is not waited for.
bool AccessibilityBus::isWaitWorthwhile() const {
  return std::ranges::any_of(owed_, [this](const Owed& owed) {
    return std::ranges::none_of(
        owed_, [&](const Owed& other) { return other.isLate && other.peer == owed.peer; });
  });
}

void AccessibilityBus::switchAccessibilityOn() {
  wantsAccessibility_ = true;
  service_.requestSwitchOn();
}

}  // namespace quorrix
