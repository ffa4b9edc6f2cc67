#include "shell/wrapping_label.h"

#include <QPainter>
#include <QScreen>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace quorrix {
namespace {

constexpr int kLongestLine = 60;  // characters of average width
constexpr qreal kNoLimit = 1e6;   // pixels

// Lays the text out from (0, 0) downwards and returns the size that it needs.
QSizeF layOut(QTextLayout& layout, qreal width) {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QSizeF size;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    line.setPosition(QPointF(0, size.height()));
    size.setWidth(std::max(size.width(), line.naturalTextWidth()));
    size.setHeight(size.height() + line.height());
  }
  layout.endLayout();
  return size;
}

// A text layout breaks lines only at line separators.
QString laidOutText(const QString& text) {
  return QString(text).replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

}  // namespace

WrappingLabel::WrappingLabel(const QString& text, QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setText(text);
}

int WrappingLabel::heightForWidth(int width) const {
  const QMargins margins = contentsMargins();
  QTextLayout layout(laidOutText(text()), font(), this);
  const QSizeF size = layOut(layout, width - margins.left() - margins.right());
  return static_cast<int>(std::ceil(size.height())) + margins.top() + margins.bottom();
}

QSize WrappingLabel::sizeHint() const {
  const QMargins margins = contentsMargins();
  QTextLayout layout(laidOutText(text()), font(), this);
  const auto needed = static_cast<int>(std::ceil(layOut(layout, kNoLimit).width()));
  // A message box is never wider than the screen, whatever its label asks for.
  const int width = std::min({needed, kLongestLine * fontMetrics().averageCharWidth(),
                              screen()->availableSize().width() / 2}) +
                    margins.left() + margins.right();
  return {width, heightForWidth(width)};
}

QSize WrappingLabel::minimumSizeHint() const { return sizeHint(); }

void WrappingLabel::paintEvent(QPaintEvent* /*event*/) {
  const QRect room = contentsRect();
  QTextLayout layout(laidOutText(text()), font(), this);
  const QSizeF size = layOut(layout, room.width());
  const qreal above = std::max(0.0, (room.height() - size.height()) / 2);
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  layout.draw(&painter, QPointF(room.left(), room.top() + above));
}

}  // namespace quorrix
