#include "main_window/splash_screen.h"

#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QVBoxLayout>

namespace quorrix {

SplashScreen::SplashScreen() : QWidget(nullptr, Qt::SplashScreen) {
  setObjectName(QStringLiteral("SplashScreen"));
  setWindowTitle(QStringLiteral("Quorrix"));
  auto* const image = new QLabel(this);
  image->setObjectName(QStringLiteral("Image1"));
  image->setAccessibleName(QStringLiteral("Quorrix"));
  image->setPixmap(QPixmap(QStringLiteral(":/splash.gif")));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(image);
  adjustSize();
  move(screen()->availableGeometry().center() - rect().center());
}

}  // namespace quorrix
