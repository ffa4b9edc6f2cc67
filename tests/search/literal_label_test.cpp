#include "search/literal_label.h"

#include <gtest/gtest.h>

#include <QImage>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

class LiteralLabelTest : public ::testing::Test {
 protected:
  QImage picture(const char* text) {
    label_.showText(QString::fromLatin1(text));
    return label_.grab().toImage();
  }

  // The number of pixel columns from the left edge to the end of the text.
  int widthOf(const char* text) {
    const QImage image = picture(text);
    const QRgb background = image.pixel(image.width() - 1, image.height() - 1);
    for (int x = image.width() - 1; x >= 0; --x) {
      for (int y = 0; y < image.height(); ++y) {
        if (image.pixel(x, y) != background) return x + 1;
      }
    }
    return 0;
  }

  QWidget window_;
  LiteralLabel label_{"Label4", &window_};
};

TEST_F(LiteralLabelTest, DrawsAnAmpersandAndMarkupAsTheyStand) {
  label_.resize(300, 20);
  EXPECT_GT(widthOf("a&b"), widthOf("ab") + 3);
  EXPECT_GT(widthOf("a&&b"), widthOf("a&b") + 3);
  EXPECT_GT(widthOf("<b>a</b>"), widthOf("bab"));
}

TEST_F(LiteralLabelTest, DrawsDotsWhereTheRoomEnds) {
  label_.resize(60, 20);
  const QImage cut = picture("www.lantern.example/wicks");
  const QString shown = label_.fontMetrics().elidedText(QStringLiteral("www.lantern.example/wicks"),
                                                        Qt::ElideRight, 60);
  ASSERT_TRUE(shown.endsWith(QChar(0x2026))) << shown.toStdString();
  EXPECT_EQ(cut, picture(shown.toStdString().c_str()));
}

TEST_F(LiteralLabelTest, KeepsTheWholeTextForToolTipAndScreenReader) {
  label_.showText(QStringLiteral("<b>a</b>&c"));
  EXPECT_EQ(label_.objectName(), QStringLiteral("Label4"));
  EXPECT_EQ(label_.text(), QStringLiteral("<b>a</b>&c"));
  EXPECT_EQ(label_.toolTip(),
            QStringLiteral("<p style='white-space:pre'>&lt;b&gt;a&lt;/b&gt;&amp;c</p>"));
}

TEST_F(LiteralLabelTest, HasNoToolTipWithoutAText) {
  label_.showText(QStringLiteral("a"));
  label_.showText(QString());
  EXPECT_EQ(label_.toolTip(), QString());
}

TEST_F(LiteralLabelTest, NeedsNoMoreWidthForALongerText) {
  label_.showText(QString(5000, QLatin1Char('w')));
  EXPECT_EQ(label_.minimumSizeHint().width(), 0);
  EXPECT_EQ(label_.sizeHint().width(), 0);
  EXPECT_GT(label_.sizeHint().height(), 8);
}

TEST_F(LiteralLabelTest, IsNoHigherForMarkup) {
  label_.showText(QStringLiteral("a"));
  const int height = label_.sizeHint().height();
  label_.showText(QStringLiteral("<h1>a</h1>"));
  EXPECT_EQ(label_.sizeHint().height(), height);
}

}  // namespace
}  // namespace quorrix
