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

QWidget* bringUpProgram(QWidget& window, const std::string& activationToken) {
  if (!window.isVisible()) return nullptr;
  constexpr const char* kToken = "XDG_ACTIVATION_TOKEN";  // where Qt reads it
  QWidget* const dialog = QApplication::activeModalWidget();
  if (dialog != nullptr) bringUp(window);
  QWidget& uppermost = dialog != nullptr ? *dialog : window;
  // A token is valid for one window only.
  if (!activationToken.empty()) qputenv(kToken, QByteArray::fromStdString(activationToken));
  bringUp(uppermost);
  qunsetenv(kToken);
  return &uppermost;
}

}  // namespace quorrix
