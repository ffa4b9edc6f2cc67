// Asks a program that may never answer, on a thread of its own.
//
// A call to a browser over COM blocks until the browser answers or dies, and cannot be
// cancelled. So the thread of the user interface makes no such call: it hands a question
// to a QuestionThread and waits for as long as it wants. While an answer is missing, no
// other question can be asked.
//
// It calls nothing of Windows itself, so that it can also be tested under the thread
// sanitizer, which runs on Linux.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace quorrix {

class QuestionThread {
 public:
  // Both run on the thread: `begin` before the first question, `end` after the last.
  QuestionThread(std::function<void()> begin, std::function<void()> end);

  // Does not wait. A thread that is still asking ends when its call returns.
  ~QuestionThread();
  QuestionThread(const QuestionThread&) = delete;
  QuestionThread& operator=(const QuestionThread&) = delete;

  [[nodiscard]] bool isAsking() const;

  // Runs `question` on the thread; must not be called while it is asking. Whatever
  // `question` uses must live until it ends, even if this object does not. It is destroyed
  // on the thread.
  void ask(std::function<void()> question);

  // Whether the question was answered within that time.
  [[nodiscard]] bool awaitAnswer(std::chrono::milliseconds patience);

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace quorrix
