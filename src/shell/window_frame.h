// The frame that the desktop draws around a window.
#pragma once

#include <QSize>

class QScreen;
class QWidget;

namespace quorrix {

// What the frame adds to the window's own size. A window that was never shown has no
// frame yet; the owner's frame is used instead.
[[nodiscard]] QSize frameAround(const QWidget& window, const QWidget& owner);

// The room that a frame of the usual size leaves on the screen. A window's real frame is
// known only once the window is shown.
[[nodiscard]] QSize roomInsideAFrame(const QScreen& screen);

}  // namespace quorrix
