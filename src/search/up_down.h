// Two arrows beside a text box that count the number in it up and down. The user can
// still type into the box, including text that is not a number. The Up and Down keys of
// the box do the same as the arrows.
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

  // `what` is the thing counted, such as "month"; it is part of the arrows' accessible
  // names.
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
