#include "shell/single_line.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFontDatabase>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

class Line final : public QLabel {
 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    drawSingleLine(*this, rect(), Qt::AlignLeft | Qt::AlignVCenter);
  }
};

class DrawSingleLine : public testing::Test {
 protected:
  QImage picture(Qt::LayoutDirection direction, const QString& text, int spareWidth = 0) {
    line_.setLayoutDirection(direction);
    line_.setText(text);
    line_.resize(line_.fontMetrics().horizontalAdvance(text) + spareWidth, 30);
    return line_.grab().toImage();
  }

  static int drawnPixels(const QImage& picture, int column) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
      count += picture.pixel(column, y) != picture.pixel(0, 0);
    }
    return count;
  }

  // Whether anything is drawn between the two columns.
  static bool isDrawn(const QImage& picture, int from, int to) {
    while (from < to && drawnPixels(picture, from) == 0) ++from;
    return from < to;
  }

  // Whether the full stops, which are lower than the letters, are at the right.
  static bool endsAtTheRight(const QImage& picture) {
    const int middle = picture.width() / 2;
    int left = 0;
    int right = 0;
    for (int x = 0; x < picture.width(); ++x)
      (x < middle ? left : right) += drawnPixels(picture, x);
    return right < left;
  }

  Line line_;
};

TEST_F(DrawSingleLine, KeepsTheFullStopsAtTheEndOfASentence) {
  if (QFontDatabase::families().isEmpty()) GTEST_SKIP() << "all letters look the same here";
  const QString hebrew = QStringLiteral("\u05DD\u05DD\u05DD......");
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    EXPECT_TRUE(endsAtTheRight(picture(direction, QStringLiteral("HHH......"))));
    EXPECT_FALSE(endsAtTheRight(picture(direction, hebrew)));
  }
}

TEST_F(DrawSingleLine, BeginsWhereTheLayoutDoes) {
  constexpr int kSpare = 200;
  const QString text = QStringLiteral("one");
  const QImage fromLeft = picture(Qt::LeftToRight, text, kSpare);
  EXPECT_FALSE(isDrawn(fromLeft, fromLeft.width() - kSpare + 2, fromLeft.width()));
  const QImage fromRight = picture(Qt::RightToLeft, text, kSpare);
  EXPECT_FALSE(isDrawn(fromRight, 0, kSpare - 2));
  EXPECT_TRUE(isDrawn(fromRight, kSpare, fromRight.width()));
}

TEST_F(DrawSingleLine, ShortensALongText) {
  constexpr int kWidth = 100;
  const auto drawn = [this](const QString& text) {
    line_.setText(text);
    line_.resize(kWidth, 30);
    return line_.grab().toImage();
  };
  const QString text(200, QLatin1Char('m'));
  const QString shortened = line_.fontMetrics().elidedText(text, Qt::ElideRight, kWidth);
  ASSERT_LT(shortened.size(), text.size());
  EXPECT_EQ(drawn(text), drawn(shortened));
}

class AddressDelegateTest : public testing::Test {
 protected:
  ~AddressDelegateTest() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

  [[nodiscard]] QString shown() const {
    return delegate_.displayText(QStringLiteral("a?b="), QLocale::c());
  }

  AddressDelegate delegate_;
};

TEST_F(AddressDelegateTest, ShowsAnAddressFromLeftToRightInEveryLayout) {
  EXPECT_EQ(shown(), QStringLiteral("a?b="));
  QApplication::setLayoutDirection(Qt::RightToLeft);
  EXPECT_EQ(shown(), QStringLiteral("\u2066a?b=\u2069"));
}

}  // namespace
}  // namespace quorrix
