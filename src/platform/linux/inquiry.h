// A series of questions, some of which depend on the answers to others, such as "which
// document does this window embed, and what is its address?". The caller is written as if
// every answer arrived at once: it stops when has() is false and later starts again from
// the top; earlier answers are then still known. So slow answers make a series take
// several passes instead of losing it.
#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <span>

#include "platform/linux/accessibility_bus.h"

namespace quorrix {

class Inquiry {
 public:
  explicit Inquiry(AccessibilityBus& bus) : bus_(bus) {}

  // Whether all of them are answered. Sends those that were not sent before.
  [[nodiscard]] bool has(std::span<const Question> questions);
  [[nodiscard]] bool has(std::initializer_list<Question> questions) {
    return has(std::span(questions.begin(), questions.size()));
  }

  // The answer to a question for which has() was true. Null if the question was refused:
  // the object or its program is gone, or does not support it.
  [[nodiscard]] const Message& operator[](const Question& question) const;

  // Forgets all answers, and drops those that have not arrived yet.
  void startOver() { entries_.clear(); }

 private:
  struct Entry {
    std::shared_ptr<PendingCall> call;  // null once it is answered
    Message answer;
  };

  AccessibilityBus& bus_;
  std::map<Question, Entry> entries_;
};

}  // namespace quorrix
