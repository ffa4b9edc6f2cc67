#include "shell/resources.h"

#include <QPixmap>

// Outside the namespace, as the macro needs it.
static void registerQuorrixResources() { Q_INIT_RESOURCE(quorrix); }

namespace quorrix {
namespace {

constexpr int kIconSizes[] = {16, 22, 24, 32, 48, 64, 128, 256};  // pixels

}  // namespace

void registerResources() { registerQuorrixResources(); }

QIcon applicationIcon() {
  QIcon icon;
  for (const int size : kIconSizes) {
    const QPixmap picture(QStringLiteral(":/icons/quorrix-%1.png").arg(size));
    if (!picture.isNull()) icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace quorrix
