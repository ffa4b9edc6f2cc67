#include "search/literal_label.h"

#include <QPainter>
#include <QStringBuilder>
#include <QStyle>

namespace quorrix {

LiteralLabel::LiteralLabel(const char* name, QWidget* parent) : QLabel(parent) {
  setObjectName(QString::fromLatin1(name));
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LiteralLabel::showText(const QString& text) {
  setText(text);
  // A tool tip is markup as soon as it looks like it, so it is made to be.
  setToolTip(text.isEmpty()
                 ? QString()
                 : QStringLiteral("<qt>") % text.toHtmlEscaped() % QStringLiteral("</qt>"));
}

QSize LiteralLabel::sizeHint() const { return {0, QLabel::sizeHint().height()}; }

QSize LiteralLabel::minimumSizeHint() const { return sizeHint(); }

void LiteralLabel::paintEvent(QPaintEvent* /*event*/) {
  const QRect room = contentsRect();
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, room.width());
  QPainter painter(this);
  style()->drawItemText(&painter, room, static_cast<int>(alignment()), palette(), isEnabled(),
                        shown, foregroundRole());
}

}  // namespace quorrix
