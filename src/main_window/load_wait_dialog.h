// Says that the data are being loaded.
#pragma once

#include <QWidget>

namespace quorrix {

class LoadWaitDialog final : public QWidget {
  Q_OBJECT

 public:
  // Stands in front of `owner` and centres itself over it.
  explicit LoadWaitDialog(QWidget& owner);
};

}  // namespace quorrix
