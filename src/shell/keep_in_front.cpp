#include "shell/keep_in_front.h"

#include <QApplication>
#include <QWidget>
#include <algorithm>

namespace quorrix {

void keepInFront(QWidget& window) {
  const auto windows = QApplication::topLevelWidgets();
  const bool isAnotherOnTop = std::ranges::any_of(windows, [](const QWidget* other) {
    return other->isVisible() && other->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
  });
  if (isAnotherOnTop) window.setWindowFlag(Qt::WindowStaysOnTopHint);
}

}  // namespace quorrix
