#include "shell/bring_up.h"

#include <QWidget>

namespace quorrix {

void bringUp(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace quorrix
