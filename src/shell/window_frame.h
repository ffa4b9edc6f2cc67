// The frame that the desktop draws around a window.
#pragma once

#include <QSize>

class QWidget;

namespace quorrix {

// What the frame adds to the window's own size. A window that was never shown
// has none yet; the owner's stands for it.
[[nodiscard]] QSize frameAround(const QWidget& window, const QWidget& owner);

}  // namespace quorrix
