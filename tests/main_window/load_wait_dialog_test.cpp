#include "main_window/load_wait_dialog.h"

#include <gtest/gtest.h>

#include <QLabel>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

class LoadWaitDialogTest : public testing::Test {
 protected:
  LoadWaitDialogTest() { owner_.setGeometry(100, 60, 700, 500); }

  QWidget owner_;
};

TEST_F(LoadWaitDialogTest, SaysWhatItIsWaitingFor) {
  const LoadWaitDialog dialog(owner_);
  EXPECT_EQ(dialog.objectName(), QStringLiteral("LoadWaitDialog"));
  EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Quorrix"));
  const auto* const label = dialog.findChild<QLabel*>(QStringLiteral("Label1"));
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(label->text(), QStringLiteral("Loading data. Please wait..."));
}

TEST_F(LoadWaitDialogTest, ShowsItsTextWhole) {
  const LoadWaitDialog dialog(owner_);
  const auto* const label = dialog.findChild<QLabel*>(QStringLiteral("Label1"));
  EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text()));
  EXPECT_TRUE(dialog.rect().contains(label->geometry()));
}

TEST_F(LoadWaitDialogTest, IsAWindowOfItsOwnInFrontOfItsOwner) {
  const LoadWaitDialog dialog(owner_);
  EXPECT_TRUE(dialog.isWindow());
  EXPECT_EQ(dialog.parentWidget(), &owner_);
}

TEST_F(LoadWaitDialogTest, StandsOverTheMiddleOfItsOwner) {
  const LoadWaitDialog dialog(owner_);
  // Twice the distance between the centres; truncation may lose half a pixel.
  const int across = 2 * dialog.x() + dialog.width() - (2 * 100 + 700);
  const int down = 2 * dialog.y() + dialog.height() - (2 * 60 + 500);
  EXPECT_TRUE(across == 0 || across == -1) << across;
  EXPECT_TRUE(down == 0 || down == -1) << down;
}

TEST_F(LoadWaitDialogTest, CannotBeResizedAndHasNoCloseButton) {
  const LoadWaitDialog dialog(owner_);
  EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
  EXPECT_FALSE(dialog.windowFlags().testFlag(Qt::WindowCloseButtonHint));
}

}  // namespace
}  // namespace quorrix
