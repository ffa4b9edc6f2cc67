// Two arrows beside a text box, which count the number in it up and down. The
// box itself stays typeable, also with what is no number, and its Up and Down
// keys do the same as the arrows.
#pragma once

#include <QWidget>

class QLineEdit;
class QToolButton;

namespace quorrix {

class UpDown final : public QWidget {
  Q_OBJECT

 public:
  struct Range {
    int lowest;
    int highest;
  };

  // `what` is counted, such as "month": the arrows are called by it.
  UpDown(const char* name, const QString& what, QLineEdit& box, Range range);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Direction { Up, Down };

  [[nodiscard]] QToolButton* makeArrow(Direction direction, const QString& what);
  void step(Direction direction);
  [[nodiscard]] int next(Direction direction) const;

  QLineEdit& box_;
  Range range_;
};

}  // namespace quorrix
