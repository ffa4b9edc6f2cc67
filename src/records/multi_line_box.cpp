#include "records/multi_line_box.h"

#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

#include "records/stored_text.h"
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
  const QSignalBlocker onlyOnce(this);
  const std::size_t allowed = std::max(limit_, size_);
  size_ = shownText().size();
  if (size_ <= allowed) return;
  const int end = std::min(lastChange_, document()->characterCount() - 1);
  QTextCursor excess(document());
  excess.setPosition(end);
  excess.setPosition(static_cast<int>(startOfExcess(document()->toRawText(), end, size_ - allowed)),
                     QTextCursor::KeepAnchor);
  excess.removeSelectedText();
  size_ = shownText().size();
}

std::string MultiLineBox::shownText() const {
  // Not toPlainText(), which makes blanks of non-breaking spaces.
  return storedText(document()->toRawText());
}

}  // namespace quorrix
