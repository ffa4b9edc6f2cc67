#include "shell/window_frame.h"

#include <QScreen>
#include <QWidget>

namespace quorrix {
namespace {

constexpr QSize kUsualFrame{8, 48};  // pixels

}  // namespace

QSize frameAround(const QWidget& window, const QWidget& owner) {
  const QSize own = window.frameSize() - window.size();
  const bool isToCome = own.isNull() && !window.windowFlags().testFlag(Qt::FramelessWindowHint);
  return isToCome ? owner.frameSize() - owner.size() : own;
}

QSize roomInsideAFrame(const QScreen& screen) { return screen.availableSize() - kUsualFrame; }

}  // namespace quorrix
