#include "shell/window_frame.h"

#include <QWidget>

namespace quorrix {

QSize frameAround(const QWidget& window, const QWidget& owner) {
  const QSize own = window.frameSize() - window.size();
  const bool isToCome = own.isNull() && !window.windowFlags().testFlag(Qt::FramelessWindowHint);
  return isToCome ? owner.frameSize() - owner.size() : own;
}

}  // namespace quorrix
