#include "search/up_down.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <string>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

class UpDownTest : public ::testing::Test {
 protected:
  std::string up(const char* from) { return pressFrom(from, "Up"); }
  std::string down(const char* from) { return pressFrom(from, "Down"); }

  std::string pressFrom(const char* text, const char* arrow) {
    box_->setText(QString::fromLatin1(text));
    arrow_(arrow).click();
    return box_->text().toStdString();
  }

  QToolButton& arrow_(const char* name) {
    return *upDown_->findChild<QToolButton*>(QString::fromLatin1(name));
  }

  QWidget window_;
  QLineEdit* box_ = new QLineEdit(&window_);
  UpDown* upDown_ = new UpDown("UpDown2", QStringLiteral("month"), *box_, {1, 12});
};

TEST_F(UpDownTest, IsFilledByTheArrowUpAboveTheArrowDown) {
  window_.show();
  const QRect up = arrow_("Up").geometry();
  const QRect down = arrow_("Down").geometry();
  EXPECT_EQ(up.united(down), upDown_->rect());
  EXPECT_EQ(down.top(), up.bottom() + 1);
}

TEST_F(UpDownTest, CountsUpAndDown) {
  EXPECT_EQ(up("6"), "7");
  EXPECT_EQ(down("6"), "5");
}

TEST_F(UpDownTest, StopsAtBothEnds) {
  EXPECT_EQ(up("11"), "12");
  EXPECT_EQ(up("12"), "12");
  EXPECT_EQ(down("2"), "1");
  EXPECT_EQ(down("1"), "1");
}

TEST_F(UpDownTest, ComesBackFromOutsideToTheNearestEnd) {
  EXPECT_EQ(up("13"), "12");
  EXPECT_EQ(down("99"), "12");
  EXPECT_EQ(up("-5"), "1");
  EXPECT_EQ(down("0"), "1");
}

TEST_F(UpDownTest, SurvivesTheLargestNumbers) {
  EXPECT_EQ(up("2147483647"), "12");
  EXPECT_EQ(down("-2147483648"), "1");
}

TEST_F(UpDownTest, StartsAtAnEndFromWhatIsNoNumber) {
  EXPECT_EQ(up(""), "1");
  EXPECT_EQ(down(""), "12");
  EXPECT_EQ(up("May"), "1");
  EXPECT_EQ(down("5th"), "12");
}

TEST_F(UpDownTest, FollowsTheKeysOfItsBox) {
  box_->setText(QStringLiteral("6"));
  QTest::keyClick(box_, Qt::Key_Up);
  EXPECT_EQ(box_->text(), QStringLiteral("7"));
  QTest::keyClick(box_, Qt::Key_Down);
  QTest::keyClick(box_, Qt::Key_Down);
  EXPECT_EQ(box_->text(), QStringLiteral("5"));
}

TEST_F(UpDownTest, LeavesItsBoxTypeable) {
  box_->setText(QStringLiteral("6"));
  box_->selectAll();
  QTest::keyClicks(box_, QStringLiteral("x9"));
  EXPECT_EQ(box_->text(), QStringLiteral("x9"));
}

TEST_F(UpDownTest, TellsWhatItsArrowsDoAndStaysOutOfTheTabOrder) {
  EXPECT_EQ(upDown_->objectName(), QStringLiteral("UpDown2"));
  EXPECT_EQ(arrow_("Up").accessibleName(), QStringLiteral("Next month"));
  EXPECT_EQ(arrow_("Down").accessibleName(), QStringLiteral("Previous month"));
  EXPECT_EQ(arrow_("Up").focusPolicy(), Qt::NoFocus);
  EXPECT_EQ(arrow_("Down").focusPolicy(), Qt::NoFocus);
}

}  // namespace
}  // namespace quorrix
