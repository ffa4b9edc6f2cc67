#include "records/multi_line_box.h"

#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

#include "shell/plain_text.h"

namespace quorrix {

MultiLineBox::MultiLineBox(std::size_t limit, QWidget* parent)
    : QPlainTextEdit(parent), limit_(limit) {
  setTabChangesFocus(true);
  connect(document(), &QTextDocument::contentsChange, this,
          [this](int position, int /*removed*/, int added) { lastChange_ = position + added; });
  connect(this, &QPlainTextEdit::textChanged, this, &MultiLineBox::cutToLimit);
}

void MultiLineBox::showStored(std::string stored) {
  stored_ = std::move(stored);
  const auto last = stored_.find_last_not_of(' ');
  const std::size_t length = last == std::string::npos ? 0 : last + 1;
  {
    const QSignalBlocker noCutting(this);
    setPlainText(toQString(std::string_view(stored_).substr(0, length)));
  }
  size_ = shownText().size();
  document()->setModified(false);
}

std::string MultiLineBox::value() const {
  if (!document()->isModified()) return stored_;
  std::string text = shownText();
  if (!text.empty()) text.resize(std::max(text.size(), stored_.size()), ' ');
  return text;
}

// Takes back what went over the limit from the end of what was inserted, and not
// from the end of the text, which the user may not even see.
void MultiLineBox::cutToLimit() {
  const QSignalBlocker noCutting(this);
  const std::size_t allowed = std::max(limit_, size_);
  QTextCursor excess(document());
  excess.setPosition(std::min(lastChange_, document()->characterCount() - 1));
  while (shownText().size() > allowed && excess.position() > 0) excess.deletePreviousChar();
  size_ = shownText().size();
}

std::string MultiLineBox::shownText() const {
  QString text = toPlainText();
  return fromQString(text.replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
}

}  // namespace quorrix
