#include "search/up_down.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QStringBuilder>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace quorrix {
namespace {

constexpr int kArrowWidth = 20;  // pixels

}  // namespace

UpDown::UpDown(const char* name, const QString& what, QLineEdit& box, Range range)
    : QWidget(box.parentWidget()), box_(box), range_(range) {
  setObjectName(QString::fromLatin1(name));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(makeArrow(Direction::Up, what));
  layout->addWidget(makeArrow(Direction::Down, what));
  setFixedSize(kArrowWidth, box.sizeHint().height());
  box.installEventFilter(this);
}

QToolButton* UpDown::makeArrow(Direction direction, const QString& what) {
  const bool isUp = direction == Direction::Up;
  auto* const arrow = new QToolButton(this);
  arrow->setObjectName(isUp ? QStringLiteral("Up") : QStringLiteral("Down"));
  arrow->setAccessibleName((isUp ? QStringLiteral("Next ") : QStringLiteral("Previous ")) % what);
  arrow->setArrowType(isUp ? Qt::UpArrow : Qt::DownArrow);
  arrow->setAutoRepeat(true);
  arrow->setFocusPolicy(Qt::NoFocus);  // the box's own keys do the same
  arrow->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
  connect(arrow, &QToolButton::clicked, this, [this, direction] { step(direction); });
  return arrow;
}

bool UpDown::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
      step(key == Qt::Key_Up ? Direction::Up : Direction::Down);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void UpDown::step(Direction direction) { box_.setText(QString::number(next(direction))); }

// If the text is not a number, Up starts at the lowest value and Down at the highest.
int UpDown::next(Direction direction) const {
  const bool isUp = direction == Direction::Up;
  bool isNumber = false;
  const int present = box_.text().toInt(&isNumber);
  if (!isNumber) return isUp ? range_.lowest : range_.highest;
  // Clamped before the step, too, because the step would overflow at the limits of int.
  const int inRange = std::clamp(present, range_.lowest - 1, range_.highest + 1);
  return std::clamp(inRange + (isUp ? 1 : -1), range_.lowest, range_.highest);
}

}  // namespace quorrix
