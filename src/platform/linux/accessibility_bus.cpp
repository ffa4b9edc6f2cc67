#include "platform/linux/accessibility_bus.h"

#include <algorithm>
#include <cstdlib>

namespace quorrix {
namespace {

constexpr std::chrono::milliseconds kRetryInterval{500};
// How long a program that was late several passes in a row is left alone after it
// has answered: a slow one must not make every pass as long as a pass may get.
constexpr std::chrono::milliseconds kShortestRest{250};
constexpr std::chrono::milliseconds kLongestRest{2000};

std::chrono::milliseconds restAfter(int misses) {
  if (misses < 2) return std::chrono::milliseconds::zero();
  return std::min(kShortestRest * (1 << std::min(misses - 2, 4)), kLongestRest);
}

bool isCompleted(const PendingCall& call) {
  return dbus_pending_call_get_completed(call.get()) != 0;
}

Answer takeAnswer(const PendingCall& call) {
  Answer answer;
  answer.message.reset(dbus_pending_call_steal_reply(call.get()));
  if (dbus_message_get_type(answer.message.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN) {
    answer.outcome = Answer::Outcome::Answered;
  } else {
    answer.outcome = Answer::Outcome::Refused;
    answer.message.reset();
  }
  return answer;
}

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
  judgePeers();
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

// Takes in what has arrived. Waits only for the answer to a fresh introduction.
void AccessibilityBus::introduce(const Deadline& deadline) {
  connection_->exchange(std::chrono::milliseconds::zero());
  while (connection_->isOpen() && !connection_->isReady() && !owesIntroduction_) {
    connection_->exchange(deadline.left());
    owesIntroduction_ = deadline.hasPassed();
  }
}

void AccessibilityBus::disconnect() {
  peers_.clear();
  connection_.reset();
}

void AccessibilityBus::judgePeers() {
  for (auto& [name, peer] : peers_) {
    if (peer.wasLate) ++peer.misses;
    if (peer.wasInTime && !peer.wasLate) peer.misses = 0;
    peer.wasLate = false;
    peer.wasInTime = false;
    if (std::erase_if(peer.owed, isCompleted) == 0 || !peer.owed.empty()) continue;
    peer.restUntil = clock_.elapsed() + restAfter(peer.misses);
  }
  std::erase_if(peers_, [](const auto& entry) {
    return entry.second.misses == 0 && entry.second.owed.empty();
  });
}

bool AccessibilityBus::isAskable(const std::string& name) const {
  const auto peer = peers_.find(name);
  return peer == peers_.end() ||
         (peer->second.owed.empty() && peer->second.restUntil <= clock_.elapsed());
}

std::vector<Answer> AccessibilityBus::ask(std::span<const Message> calls,
                                          const Deadline& deadline) {
  std::vector<Answer> answers(calls.size());
  if (!connection_ || !connection_->isReady() || deadline.hasPassed()) return answers;
  std::vector<PendingCall> pending(calls.size());
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (!isAskable(dbus_message_get_destination(calls[i].get()))) continue;
    pending[i] = connection_->send(calls[i]);
    ++callsSent_;
  }
  await(pending, deadline);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (!pending[i]) continue;
    const std::string peer = dbus_message_get_destination(calls[i].get());
    if (isCompleted(pending[i])) {
      answers[i] = takeAnswer(pending[i]);
      if (const auto known = peers_.find(peer); known != peers_.end()) {
        known->second.wasInTime = true;
      }
    } else if (connection_->isOpen()) {
      peers_[peer].owed.push_back(std::move(pending[i]));
      peers_[peer].wasLate = true;
    }
  }
  return answers;
}

void AccessibilityBus::await(std::span<const PendingCall> pending, const Deadline& deadline) {
  for (const PendingCall& call : pending) {
    while (call && !isCompleted(call) && connection_->isOpen()) {
      connection_->exchange(deadline.left());
      if (deadline.hasPassed()) return;
    }
  }
}

void AccessibilityBus::switchAccessibilityOn() {
  wantsAccessibility_ = true;
  service_.requestSwitchOn();
}

}  // namespace quorrix
