#include "shell/window_frame.h"

#include <gtest/gtest.h>

#include <QWidget>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

class WindowFrameTest : public ::testing::Test {
 protected:
  WindowFrameTest() {
    owner_.show();
    ownersFrame_ = owner_.frameSize() - owner_.size();
  }

  QWidget owner_;
  QSize ownersFrame_;
};

TEST_F(WindowFrameTest, OfAWindowThatWasNeverShownIsTheOwners) {
  ASSERT_FALSE(ownersFrame_.isNull()) << "the desktop of the tests draws frames";
  EXPECT_EQ(frameAround(QWidget(), owner_), ownersFrame_);
}

TEST_F(WindowFrameTest, OfAWindowWithoutOneIsNone) {
  EXPECT_EQ(frameAround(QWidget(nullptr, Qt::FramelessWindowHint), owner_), QSize(0, 0));
}

TEST_F(WindowFrameTest, OfAWindowOnScreenIsItsOwn) {
  EXPECT_EQ(frameAround(owner_, QWidget()), ownersFrame_);
}

}  // namespace
}  // namespace quorrix
