#include "platform/windows/question_thread.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace quorrix {

struct QuestionThread::State {
  std::mutex mutex;
  std::condition_variable changed;
  std::function<void()> question;
  bool isAsking = false;
  bool isOver = false;

  void run() {
    std::unique_lock lock(mutex);
    for (;;) {
      changed.wait(lock, [this] { return isOver || question; });
      if (!question) return;
      std::function<void()> asked = std::exchange(question, nullptr);
      lock.unlock();
      try {
        asked();
      } catch (...) {  // out of memory: no answer
      }
      asked = nullptr;
      lock.lock();
      isAsking = false;
      changed.notify_all();
    }
  }
};

QuestionThread::QuestionThread(std::function<void()> begin, std::function<void()> end)
    : state_(std::make_shared<State>()) {
  std::thread([state = state_, begin = std::move(begin), end = std::move(end)] {
    begin();
    state->run();
    end();
  }).detach();
}

QuestionThread::~QuestionThread() {
  const std::lock_guard lock(state_->mutex);
  state_->isOver = true;
  state_->changed.notify_all();
}

bool QuestionThread::isAsking() const {
  const std::lock_guard lock(state_->mutex);
  return state_->isAsking;
}

void QuestionThread::ask(std::function<void()> question) {
  const std::lock_guard lock(state_->mutex);
  state_->question = std::move(question);
  state_->isAsking = true;
  state_->changed.notify_all();
}

bool QuestionThread::awaitAnswer(std::chrono::milliseconds patience) {
  std::unique_lock lock(state_->mutex);
  return state_->changed.wait_for(lock, patience, [this] { return !state_->isAsking; });
}

}  // namespace quorrix
