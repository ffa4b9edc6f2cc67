#include "platform/linux/inquiry.h"

namespace quorrix {
namespace {

Message takeAnswer(const PendingCall& call) {
  if (!call) return nullptr;
  Message answer(dbus_pending_call_steal_reply(call.get()));
  if (dbus_message_get_type(answer.get()) != DBUS_MESSAGE_TYPE_METHOD_RETURN) return nullptr;
  return answer;
}

}  // namespace

bool Inquiry::has(std::span<const Question> questions) {
  bool isComplete = true;
  for (const Question& question : questions) {
    const auto [place, isNew] = entries_.try_emplace(question);
    Entry& entry = place->second;
    if (isNew) entry.call = bus_.send(question);
    if (!entry.call) continue;
    if (!isCompleted(*entry.call)) {
      isComplete = false;
      continue;
    }
    entry.answer = takeAnswer(*entry.call);
    entry.call.reset();
  }
  return isComplete;
}

const Message& Inquiry::operator[](const Question& question) const {
  return entries_.at(question).answer;
}

}  // namespace quorrix
