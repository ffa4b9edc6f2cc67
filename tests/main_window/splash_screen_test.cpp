#include "main_window/splash_screen.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QScreen>

#include "support/qt_printers.h"

namespace quorrix {
namespace {

TEST(SplashScreen, IsItsPictureAndNothingElse) {
  SplashScreen splash;
  splash.show();
  const auto* const image = splash.findChild<QLabel*>(QStringLiteral("Image1"));
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->pixmap().size(), QSize(480, 288));
  EXPECT_EQ(image->geometry(), QRect(0, 0, 480, 288));
  EXPECT_EQ(splash.size(), QSize(480, 288));
}

TEST(SplashScreen, IsASplashWindowOfItsOwn) {
  const SplashScreen splash;
  EXPECT_EQ(splash.objectName(), QStringLiteral("SplashScreen"));
  EXPECT_EQ(splash.windowType(), Qt::SplashScreen);
  EXPECT_EQ(splash.parentWidget(), nullptr);
  EXPECT_EQ(splash.windowTitle(), QStringLiteral("Quorrix"));
}

TEST(SplashScreen, StandsInTheMiddleOfTheScreen) {
  const SplashScreen splash;
  ASSERT_EQ(splash.screen()->availableGeometry(), QRect(0, 0, 800, 800));
  EXPECT_EQ(splash.pos(), QPoint(160, 256));
}

TEST(SplashScreen, NamesItsPictureToThoseWhoCannotSeeIt) {
  const SplashScreen splash;
  EXPECT_EQ(splash.findChild<QLabel*>(QStringLiteral("Image1"))->accessibleName(),
            QStringLiteral("Quorrix"));
}

}  // namespace
}  // namespace quorrix
