#include "search/literal_label.h"

#include "shell/plain_text.h"
#include "shell/single_line.h"

namespace quorrix {

LiteralLabel::LiteralLabel(const char* name, QWidget* parent) : QLabel(parent) {
  setObjectName(QString::fromLatin1(name));
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void LiteralLabel::showText(const QString& text) {
  setText(text);
  setToolTip(text.isEmpty() ? QString() : asToolTip(text));
}

QSize LiteralLabel::sizeHint() const { return {0, QLabel::sizeHint().height()}; }

QSize LiteralLabel::minimumSizeHint() const { return sizeHint(); }

void LiteralLabel::paintEvent(QPaintEvent* /*event*/) {
  drawSingleLine(*this, contentsRect(), alignment());
}

}  // namespace quorrix
