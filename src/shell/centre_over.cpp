#include "shell/centre_over.h"

#include <QWidget>

#include "shell/twips.h"

namespace quorrix {
namespace {

int centred(int ownerStart, int ownerLength, int length) {
  const int twips =
      twipsFromPixels(ownerStart) + (twipsFromPixels(ownerLength) - twipsFromPixels(length)) / 2;
  return twips / kTwipsPerPixel;
}

// A window that was never shown has no frame yet; the owner's will be like it.
QSize framedSize(const QWidget& dialog, const QWidget& owner) {
  const bool isFrameToCome = dialog.frameSize() == dialog.size() &&
                             !dialog.windowFlags().testFlag(Qt::FramelessWindowHint);
  const QSize ownersFrame = owner.frameSize() - owner.size();
  return isFrameToCome ? dialog.size() + ownersFrame : dialog.frameSize();
}

}  // namespace

void centreOver(QWidget& dialog, const QWidget& owner) {
  const QRect frame = owner.frameGeometry();
  const QSize size = framedSize(dialog, owner);
  dialog.move(centred(frame.left(), frame.width(), size.width()),
              centred(frame.top(), frame.height(), size.height()));
}

}  // namespace quorrix
