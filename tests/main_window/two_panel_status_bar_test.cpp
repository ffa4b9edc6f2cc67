#include "main_window/two_panel_status_bar.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <QTest>
#include <QTextDocumentFragment>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

class TwoPanelStatusBarTest : public testing::Test {
 protected:
  void SetUp() override {
    bar_.resize(400, bar_.height());
    bar_.setPanelWidths(260, 140);
    bar_.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&bar_));
  }

  QLabel& panel(int number) {
    return *bar_.findChild<QLabel*>(QStringLiteral("StatusBarPanel%1").arg(number));
  }

  // A picture of the second panel with this text.
  QImage pictureWith(const QString& text) {
    bar_.setPanelText(2, text);
    return panel(2).grab().toImage();
  }

  // The tool tip as Qt shows it, which interprets a text that looks like markup.
  QString shownToolTip(int number) {
    const QString toolTip = panel(number).toolTip();
    return Qt::mightBeRichText(toolTip) ? QTextDocumentFragment::fromHtml(toolTip).toPlainText()
                                        : toolTip;
  }

  TwoPanelStatusBar bar_;
};

using TwoPanelStatusBarPanels = TwoPanelStatusBarTest;

TEST_F(TwoPanelStatusBarPanels, ShareTheBarFromLeftToRight) {
  EXPECT_EQ(bar_.objectName(), QStringLiteral("StatusBar"));
  EXPECT_EQ(panel(1).geometry(), QRect(0, 0, 260, bar_.height()));
  EXPECT_EQ(panel(2).geometry(), QRect(260, 0, 140, bar_.height()));
}

TEST_F(TwoPanelStatusBarPanels, ShareTheBarFromRightToLeftInSuchALayout) {
  bar_.setLayoutDirection(Qt::RightToLeft);
  bar_.setPanelWidths(240, 140);
  EXPECT_EQ(panel(1).geometry(), QRect(160, 0, 240, bar_.height()));
  EXPECT_EQ(panel(2).geometry(), QRect(20, 0, 140, bar_.height()));
}

TEST_F(TwoPanelStatusBarPanels, KeepTheirWidthsUntilTheyAreGivenOthers) {
  bar_.resize(600, bar_.height());
  EXPECT_EQ(panel(1).geometry(), QRect(0, 0, 260, bar_.height()));
  bar_.setPanelWidths(390, 210);
  EXPECT_EQ(panel(1).geometry(), QRect(0, 0, 390, bar_.height()));
  EXPECT_EQ(panel(2).geometry(), QRect(390, 0, 210, bar_.height()));
}

TEST_F(TwoPanelStatusBarPanels, BecomeAsHighAsALargerFontNeeds) {
  QFont large = bar_.font();
  large.setPointSizeF(3 * large.pointSizeF());
  bar_.setFont(large);
  EXPECT_GE(bar_.height(), QFontMetrics(large).height());
  EXPECT_EQ(panel(1).height(), bar_.height());
}

TEST_F(TwoPanelStatusBarPanels, AreHighEnoughForTheirText) {
  EXPECT_GE(panel(1).contentsRect().height(), panel(1).fontMetrics().height());
}

TEST_F(TwoPanelStatusBarPanels, AreEmptyAtFirst) {
  EXPECT_EQ(bar_.panelText(1), QString());
  EXPECT_EQ(bar_.panelText(2), QString());
}

using TwoPanelStatusBarText = TwoPanelStatusBarTest;

TEST_F(TwoPanelStatusBarText, GoesToItsOwnPanel) {
  bar_.setPanelText(1, QStringLiteral("Last archive loaded: none"));
  bar_.setPanelText(2, QStringLiteral("Tracking websites."));
  EXPECT_EQ(bar_.panelText(1), QStringLiteral("Last archive loaded: none"));
  EXPECT_EQ(bar_.panelText(2), QStringLiteral("Tracking websites."));
  EXPECT_EQ(panel(1).text(), QStringLiteral("Last archive loaded: none"));
  EXPECT_EQ(panel(2).text(), QStringLiteral("Tracking websites."));
}

TEST_F(TwoPanelStatusBarText, IsDrawn) {
  EXPECT_NE(pictureWith(QStringLiteral("Tracking")), pictureWith(QString()));
}

// On Windows, the offscreen platform finds no font and draws a box for every letter.
#ifndef _WIN32
TEST_F(TwoPanelStatusBarText, IsDrawnLetterByLetter) {
  EXPECT_NE(pictureWith(QStringLiteral("Tracking")), pictureWith(QStringLiteral("Trackinh")));
}
#endif

// The picture equals that of a shorter text that ends in an ellipsis and fits.
TEST_F(TwoPanelStatusBarText, IsCutOffWithAnEllipsisWhenItIsTooLong) {
  const QImage tooLong = pictureWith(QString(200, QLatin1Char('m')));
  bool isCut = false;
  for (int letters = 1; !isCut; ++letters) {
    const QString shorter = QString(letters, QLatin1Char('m')) + QChar(0x2026);
    if (panel(2).fontMetrics().horizontalAdvance(shorter) >= panel(2).width()) break;
    isCut = tooLong == pictureWith(shorter);
  }
  EXPECT_TRUE(isCut);
}

TEST_F(TwoPanelStatusBarText, StaysWholeForWhoeverAsksForIt) {
  const QString text(200, QLatin1Char('m'));
  bar_.setPanelText(1, text);
  EXPECT_EQ(bar_.panelText(1), text);
  EXPECT_EQ(panel(1).text(), text);
  EXPECT_EQ(shownToolTip(1).remove(QLatin1Char('\n')), text);
}

TEST_F(TwoPanelStatusBarText, DoesNotWidenTheBar) {
  const int width = bar_.minimumSizeHint().width();
  bar_.setPanelText(1, QString(500, QLatin1Char('m')));
  EXPECT_EQ(bar_.minimumSizeHint().width(), width);
  EXPECT_EQ(panel(1).width(), 260);
}

TEST_F(TwoPanelStatusBarText, IsNeverMarkup) {
  bar_.setPanelText(1, QStringLiteral("<b>May</b>"));
  EXPECT_EQ(panel(1).textFormat(), Qt::PlainText);
  EXPECT_NE(pictureWith(QStringLiteral("<b>May</b>")), pictureWith(QStringLiteral("May")));
}

TEST_F(TwoPanelStatusBarText, AppearsInTheToolTipLetterByLetter) {
  for (const QString& text :
       {QStringLiteral("Last archive loaded: none"), QStringLiteral("<b>May</b>"),
        QStringLiteral("Tom & Ann"), QStringLiteral("a > b"), QStringLiteral("\"May\""),
        QStringLiteral("&lt;"), QStringLiteral("&amp;"), QStringLiteral("a  b")}) {
    bar_.setPanelText(1, text);
    EXPECT_EQ(shownToolTip(1).replace(QChar(0xa0), QLatin1Char(' ')), text);
  }
}

}  // namespace
}  // namespace quorrix
