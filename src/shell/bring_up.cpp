#include "shell/bring_up.h"

#include <QApplication>
#include <QWidget>

namespace quorrix {

void bringUp(QWidget& window) {
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

void bringUpProgram(QWidget& window, const std::string& activationToken) {
  if (!window.isVisible()) return;
  constexpr const char* kToken = "XDG_ACTIVATION_TOKEN";  // where Qt looks for it
  if (!activationToken.empty()) qputenv(kToken, QByteArray::fromStdString(activationToken));
  bringUp(window);
  if (QWidget* dialog = QApplication::activeModalWidget()) bringUp(*dialog);
  qunsetenv(kToken);
}

}  // namespace quorrix
