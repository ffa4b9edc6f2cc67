#include "shell/qt_event_pump.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QObject>
#include <QTimer>
#include <chrono>

namespace quorrix {
namespace {

constexpr std::chrono::milliseconds kShort{100};

using namespace std::chrono_literals;

TEST(QtEventPump, HandlesEveryPendingEvent) {
  QtEventPump pump;
  QObject receiver;
  int handled = 0;
  for (int i = 0; i < 3; ++i) {
    QMetaObject::invokeMethod(
        &receiver, [&handled] { ++handled; }, Qt::QueuedConnection);
  }
  pump.processPending();
  EXPECT_EQ(handled, 3);
}

TEST(QtEventPump, ReturnsAtOnceWhenNothingIsPending) {
  QtEventPump pump;
  QObject receiver;
  bool isLater = false;
  pump.processPending();
  QTimer::singleShot(1h, &receiver, [&isLater] { isLater = true; });
  pump.processPending();
  EXPECT_FALSE(isLater);
}

TEST(QtEventPump, GoesOnHandlingEventsWhileItPauses) {
  QtEventPump pump;
  QObject receiver;
  bool isHandled = false;
  QTimer::singleShot(20ms, &receiver, [&isHandled] { isHandled = true; });
  pump.pause(kShort);
  EXPECT_TRUE(isHandled);
}

TEST(QtEventPump, PausesAgainInsideAPause) {
  QtEventPump pump;
  QObject receiver;
  bool isThrough = false;
  QTimer::singleShot(0, &receiver, [&pump, &isThrough] {
    pump.pause(kShort);
    isThrough = true;
  });
  pump.pause(kShort);
  EXPECT_TRUE(isThrough);
}

// Otherwise a loop that pauses would keep the program from ending.
TEST(QtEventPump, DoesNotPauseOnceTheProgramEnds) {
  QtEventPump pump;
  QObject receiver;
  bool hasReturned = false;
  QTimer::singleShot(0, &receiver, [&] {
    QCoreApplication::exit(3);
    bool isHandled = false;
    QTimer::singleShot(0, &receiver, [&isHandled] { isHandled = true; });
    pump.pause(kShort);
    EXPECT_FALSE(isHandled);
    hasReturned = true;
    QCoreApplication::removePostedEvents(&receiver);
  });
  EXPECT_EQ(QCoreApplication::exec(), 3);
  EXPECT_TRUE(hasReturned);
}

}  // namespace
}  // namespace quorrix
