#include "shell/centre_over.h"

#include <QWidget>

#include "shell/twips.h"
#include "shell/window_frame.h"

namespace quorrix {
namespace {

int centred(int ownerStart, int ownerLength, int length) {
  const int twips =
      twipsFromPixels(ownerStart) + (twipsFromPixels(ownerLength) - twipsFromPixels(length)) / 2;
  return twips / kTwipsPerPixel;
}

}  // namespace

void centreOver(QWidget& dialog, const QWidget& owner) {
  const QRect frame = owner.frameGeometry();
  const QSize size = dialog.size() + frameAround(dialog, owner);
  dialog.move(centred(frame.left(), frame.width(), size.width()),
              centred(frame.top(), frame.height(), size.height()));
}

}  // namespace quorrix
