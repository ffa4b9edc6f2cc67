#include "platform/windows/question_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>

namespace quorrix {
namespace {

using namespace std::chrono_literals;

void doNothing() {}

TEST(QuestionThread, AsksOnAThreadOfItsOwn) {
  QuestionThread thread(doNothing, doNothing);
  const auto answer = std::make_shared<std::thread::id>();
  thread.ask([answer] { *answer = std::this_thread::get_id(); });
  ASSERT_TRUE(thread.awaitAnswer(10s));
  EXPECT_NE(*answer, std::thread::id());
  EXPECT_NE(*answer, std::this_thread::get_id());
}

TEST(QuestionThread, CanBePolledWhileItIsAsking) {
  QuestionThread thread(doNothing, doNothing);
  const auto answer = std::make_shared<int>();
  thread.ask([answer] { *answer = 42; });
  while (thread.isAsking()) std::this_thread::yield();
  EXPECT_EQ(*answer, 42);
}

TEST(QuestionThread, WaitsNoLongerThanItIsTold) {
  QuestionThread thread(doNothing, doNothing);
  const auto untilEnd = std::make_shared<std::promise<void>>();
  thread.ask([end = std::make_shared<std::future<void>>(untilEnd->get_future())] { end->wait(); });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(thread.awaitAnswer(50ms));
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
  EXPECT_TRUE(thread.isAsking());
  untilEnd->set_value();
  EXPECT_TRUE(thread.awaitAnswer(10s));
  EXPECT_FALSE(thread.isAsking());
}

TEST(QuestionThread, EndsWithoutWaitingForAnAnswer) {
  const auto untilEnd = std::make_shared<std::promise<void>>();
  const auto isEnded = std::make_shared<std::promise<void>>();
  {
    QuestionThread thread(doNothing, doNothing);
    thread.ask([end = std::make_shared<std::future<void>>(untilEnd->get_future()), isEnded] {
      end->wait();
      isEnded->set_value();
    });
  }
  untilEnd->set_value();
  EXPECT_EQ(isEnded->get_future().wait_for(10s), std::future_status::ready);
}

TEST(QuestionThread, BeginsAndEndsOnTheThread) {
  std::thread::id begun;
  std::thread::id asked;
  std::promise<std::thread::id> ended;
  {
    QuestionThread thread([&] { begun = std::this_thread::get_id(); },
                          [&] { ended.set_value(std::this_thread::get_id()); });
    thread.ask([&] { asked = std::this_thread::get_id(); });
    ASSERT_TRUE(thread.awaitAnswer(10s));
    EXPECT_EQ(begun, asked);
  }
  EXPECT_EQ(ended.get_future().get(), asked);
}

// What a question keeps, such as objects of the browser, is released where it was used.
TEST(QuestionThread, DestroysAQuestionOnItsThread) {
  struct Kept {
    explicit Kept(std::thread::id& where) : where_(where) {}
    ~Kept() { where_ = std::this_thread::get_id(); }
    std::thread::id& where_;
  };
  std::thread::id asked;
  std::thread::id destroyed;
  QuestionThread thread(doNothing, doNothing);
  thread.ask(
      [kept = std::make_shared<Kept>(destroyed), &asked] { asked = std::this_thread::get_id(); });
  ASSERT_TRUE(thread.awaitAnswer(10s));
  EXPECT_EQ(destroyed, asked);
}

}  // namespace
}  // namespace quorrix
