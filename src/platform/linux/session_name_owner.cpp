#include "platform/linux/session_name_owner.h"

#include "platform/linux/accessible_object.h"
#include "platform/linux/question.h"
#include "platform/linux/session_bus.h"

namespace quorrix {
namespace {

constexpr std::chrono::milliseconds kInterval{1000};

}  // namespace

void SessionNameOwner::advance() {
  if (connection_ && !connection_->isOpen()) {
    call_.reset();
    connection_.reset();
    processId_.reset();
  }
  if (!connection_) {
    if (clock_.elapsed() < nextAsk_) return;
    nextAsk_ = clock_.elapsed() + kInterval;
    connection_ = BusConnection::open(sessionBusAddress());
    if (!connection_) return;
    nextAsk_ = clock_.elapsed();
  }
  connection_->exchange(std::chrono::milliseconds::zero());
  if (call_ && isCompleted(call_)) processId_ = numberIn(takeAnswer(call_)).value_or(0);
  if (call_ || !connection_->isReady() || clock_.elapsed() < nextAsk_) return;
  const Question owner{Question::Topic::ProcessId, {name_, {}}};
  call_ = connection_->send(messageFor(owner));
  nextAsk_ = clock_.elapsed() + kInterval;
  connection_->exchange(std::chrono::milliseconds::zero());
}

}  // namespace quorrix
