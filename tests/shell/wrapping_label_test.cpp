#include "shell/wrapping_label.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QImage>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

const QString kPath = QStringLiteral("/home/") + QString(200, u'w');

// The number of lines in a label of this height. A line may be a fraction of a pixel
// lower than the font.
int linesIn(const QLabel& label, int height) {
  return qRound(static_cast<double>(height) / label.fontMetrics().height());
}

// The lowest row of the picture that is not empty.
int lowestInk(const QImage& picture) {
  const QRgb ground = picture.pixel(0, 0);
  for (int y = picture.height() - 1; y > 0; --y) {
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixel(x, y) != ground) return y;
    }
  }
  return 0;
}

TEST(WrappingLabel, KeepsItsTextAsItIs) {
  const QString text = QStringLiteral("Load archive data from '") + kPath + QStringLiteral("'?");
  WrappingLabel label(text, nullptr);
  EXPECT_EQ(label.text(), text);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name), text);
}

TEST(WrappingLabel, IsAsWideAsAShortTextAndOneLineHigh) {
  const QString text = QStringLiteral("Unable to find file.");
  WrappingLabel label(text, nullptr);
  const int width = label.fontMetrics().horizontalAdvance(text);
  EXPECT_GE(label.minimumSizeHint().width(), width);
  EXPECT_LE(label.minimumSizeHint().width(), width + 2);
  EXPECT_EQ(linesIn(label, label.minimumSizeHint().height()), 1);
}

QFont ofHeight(int pixels) {
  QFont font;
  font.setPixelSize(pixels);
  return font;
}

TEST(WrappingLabel, NeverNeedsMoreThanSixtyCharacters) {
  WrappingLabel label(kPath, nullptr);
  label.setFont(ofHeight(5));
  EXPECT_EQ(label.minimumSizeHint().width(), 60 * label.fontMetrics().averageCharWidth());
}

TEST(WrappingLabel, NeverNeedsMoreThanHalfOfTheScreen) {
  WrappingLabel label(kPath, nullptr);
  label.setFont(ofHeight(40));
  EXPECT_EQ(label.minimumSizeHint().width(), label.screen()->availableSize().width() / 2);
}

TEST(WrappingLabel, BreaksALongWordWhereTheLineEnds) {
  WrappingLabel label(kPath, nullptr);
  constexpr int kWidth = 300;
  const int height = label.heightForWidth(kWidth);
  const int letters = label.fontMetrics().horizontalAdvance(kPath);
  EXPECT_GE(linesIn(label, height), letters / kWidth);
  label.resize(kWidth, height);
  // Something is painted in the last line, so nothing is cut off.
  EXPECT_GT(lowestInk(label.grab().toImage()), height - label.fontMetrics().height());
}

TEST(WrappingLabel, BreaksAtABlankWhereThereIsOne) {
  WrappingLabel label(QStringLiteral("aaaa bbbb"), nullptr);
  const int word = label.fontMetrics().horizontalAdvance(QStringLiteral("aaaa b"));
  EXPECT_EQ(linesIn(label, label.heightForWidth(word)), 2);
}

TEST(WrappingLabel, BeginsALineAtALineEnd) {
  const WrappingLabel label(QStringLiteral("one\ntwo\nthree"), nullptr);
  EXPECT_EQ(linesIn(label, label.minimumSizeHint().height()), 3);
}

TEST(WrappingLabel, ShowsMarkupLetterByLetter) {
  const QString text = QStringLiteral("<b>&amp;</b>");
  WrappingLabel label(text, nullptr);
  EXPECT_GE(label.minimumSizeHint().width(), label.fontMetrics().horizontalAdvance(text));
}

}  // namespace
}  // namespace quorrix
