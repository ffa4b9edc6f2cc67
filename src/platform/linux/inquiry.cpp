#include "platform/linux/inquiry.h"

namespace quorrix {

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
