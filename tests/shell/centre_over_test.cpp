#include "shell/centre_over.h"

#include <gtest/gtest.h>

#include <QWidget>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

// The windows are not shown, so no frame is added to their sizes.
QPoint placeOver(const QRect& owner, const QSize& dialog) {
  QWidget ownerWindow;
  ownerWindow.setGeometry(owner);
  QWidget dialogWindow;
  dialogWindow.resize(dialog);
  centreOver(dialogWindow, ownerWindow);
  EXPECT_EQ(dialogWindow.size(), dialog);
  return dialogWindow.pos();
}

TEST(CentreOver, LeavesAsMuchOfTheOwnerOnBothSides) {
  EXPECT_EQ(placeOver(QRect(100, 50, 600, 400), QSize(200, 100)), QPoint(300, 200));
}

// 399 and 299 pixels are left over: 199 1/2 and 149 1/2 on each side.
TEST(CentreOver, TruncatesHalves) {
  EXPECT_EQ(placeOver(QRect(100, 50, 600, 400), QSize(201, 101)), QPoint(299, 199));
}

TEST(CentreOver, LetsALargerDialogStickOutOnAllSides) {
  EXPECT_EQ(placeOver(QRect(500, 300, 100, 80), QSize(300, 200)), QPoint(400, 240));
}

// 15 x 100.5 twips too wide: -1507.5 twips on the left, truncated to -1507.
TEST(CentreOver, TruncatesHalvesTowardsTheOwnerToo) {
  EXPECT_EQ(placeOver(QRect(0, 0, 100, 100), QSize(301, 301)), QPoint(-100, -100));
}

TEST(CentreOver, WorksOnAScreenLeftOfTheFirst) {
  EXPECT_EQ(placeOver(QRect(-800, -100, 400, 300), QSize(200, 100)), QPoint(-700, 0));
}

}  // namespace
}  // namespace quorrix
