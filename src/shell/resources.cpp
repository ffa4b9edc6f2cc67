#include "shell/resources.h"

#include <QPainter>
#include <QPixmap>

// Outside the namespace, because the macro requires it.
static void registerQuorrixResources() { Q_INIT_RESOURCE(quorrix); }

namespace quorrix {
namespace {

constexpr int kIconSizes[] = {16, 22, 24, 32, 48, 64, 128, 256};  // pixels

// The badge in the lower right corner, as a share of the icon's size, and its rim, as a
// share of the badge's size.
constexpr double kBadgeShare = 0.5;
constexpr double kRimShare = 0.15;
constexpr QRgb kBadgeColour = 0xffd32f2f;  // red, like a recording light

// An icon of all pictures that exist, with `change` applied to each.
template <typename Change>
QIcon iconOf(Change change) {
  QIcon icon;
  for (const int size : kIconSizes) {
    QPixmap picture(QStringLiteral(":/icons/quorrix-%1.png").arg(size));
    if (picture.isNull()) continue;
    change(picture);
    icon.addPixmap(picture);
  }
  return icon;
}

void paintBadge(QPixmap& picture) {
  const double size = kBadgeShare * picture.width();
  const double rim = kRimShare * size;
  QRectF badge(picture.width() - size, picture.height() - size, size, size);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.drawEllipse(badge);
  painter.setBrush(QColor(kBadgeColour));
  painter.drawEllipse(badge.adjusted(rim, rim, -rim, -rim));
}

}  // namespace

void registerResources() { registerQuorrixResources(); }

QIcon applicationIcon() {
  return iconOf([](QPixmap&) {});
}

QIcon trackingIcon() { return iconOf(paintBadge); }

}  // namespace quorrix
