// Says that the data are being loaded.
#pragma once

#include <QWidget>

namespace quorrix {

class LoadWaitDialog final : public QWidget {
  Q_OBJECT

 public:
  // Stays in front of `owner`, centred over it.
  explicit LoadWaitDialog(QWidget& owner);
};

}  // namespace quorrix
