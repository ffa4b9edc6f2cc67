// Draws texts of one line as they are read, whatever the direction of the layout: an
// English sentence in an Arabic desktop keeps its full stop at the end.
#pragma once

#include <QLabel>
#include <QStyledItemDelegate>

namespace quorrix {

// Draws the text of a label, shortened to `area` if needed. `alignment` is the one for a
// layout from left to right.
void drawSingleLine(QLabel& label, const QRect& area, Qt::Alignment alignment);

// The text with marks, in a layout from right to left, that keep its direction apart from
// that of the layout. For drawing only.
[[nodiscard]] QString inItsOwnDirection(const QString& text);

// Draws rows that are addresses, which are read from left to right.
class AddressDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  [[nodiscard]] QString displayText(const QVariant& value, const QLocale& locale) const override;
};

}  // namespace quorrix
