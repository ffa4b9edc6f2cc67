#include "records/line_box.h"

#include <QRegularExpression>

#include "records/stored_text.h"
#include "shell/plain_text.h"

namespace quorrix {

LineBox::LineBox(std::size_t limit, QWidget* parent) : QLineEdit(parent), limit_(limit) {
  connect(this, &QLineEdit::textEdited, this, &LineBox::takeEdited);
}

// Takes back what went over the limit from the end of what was inserted.
void LineBox::takeEdited() {
  static const QRegularExpression lineBreak(QStringLiteral("\\r\\n|[\\r\\n\\x{2028}\\x{2029}]"));
  const QSignalBlocker onlyOnce(this);
  if (text().contains(lineBreak)) {
    const auto behind = text().mid(cursorPosition()).replace(lineBreak, QStringLiteral(" ")).size();
    setText(text().replace(lineBreak, QStringLiteral(" ")));
    setCursorPosition(static_cast<int>(text().size() - behind));
  }
  const std::size_t size = fromQString(text()).size();
  if (size <= limit_) return;
  const int end = cursorPosition();
  const auto start = static_cast<int>(startOfExcess(text(), end, size - limit_));
  setSelection(start, end - start);
  del();
}

}  // namespace quorrix
