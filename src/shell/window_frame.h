// The frame that the desktop draws around a window.
#pragma once

#include <QSize>

class QScreen;
class QWidget;

namespace quorrix {

// What the frame adds to the window's own size. A window that was never shown
// has none yet; the owner's stands for it.
[[nodiscard]] QSize frameAround(const QWidget& window, const QWidget& owner);

// What a frame, which is known only once the window shows, leaves of the screen.
[[nodiscard]] QSize roomInsideAFrame(const QScreen& screen);

}  // namespace quorrix
