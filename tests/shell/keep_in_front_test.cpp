#include "shell/keep_in_front.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace quorrix {
namespace {

bool staysOnTop(const QWidget& window) {
  return window.windowFlags().testFlag(Qt::WindowStaysOnTopHint);
}

TEST(KeepInFront, LeavesAWindowAsItIsWhileNoneStaysOnTop) {
  QWidget other;
  other.show();
  QWidget window;
  keepInFront(window);
  EXPECT_FALSE(staysOnTop(window));
}

TEST(KeepInFront, HasAWindowStayOnTopWithAnother) {
  QWidget other;
  other.setWindowFlag(Qt::WindowStaysOnTopHint);
  QWidget window;
  keepInFront(window);
  EXPECT_FALSE(staysOnTop(window)) << "the other one is not shown";
  other.show();
  keepInFront(window);
  EXPECT_TRUE(staysOnTop(window));
}

}  // namespace
}  // namespace quorrix
