#include "records/multi_line_box.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

#include "records/stored_text.h"
#include "shell/plain_text.h"

namespace quorrix {

MultiLineBox::MultiLineBox(std::size_t limit, QWidget* parent)
    : QPlainTextEdit(parent), limit_(limit) {
  setTabChangesFocus(true);
}

void MultiLineBox::showStored(std::string stored) {
  stored_ = std::move(stored);
  const auto last = stored_.find_last_not_of(' ');
  const std::size_t length = last == std::string::npos ? 0 : last + 1;
  setPlainText(toQString(std::string_view(stored_).substr(0, length)));
  document()->setModified(false);
}

std::string MultiLineBox::value() const {
  if (!document()->isModified()) return stored_;
  std::string text = shownText();
  if (!text.empty()) text.resize(std::max(text.size(), stored_.size()), ' ');
  return text;
}

void MultiLineBox::keyPressEvent(QKeyEvent* event) {
  const bool isLineBreak = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isLineBreak && admitted(QStringLiteral("\n")).isEmpty()) return;
  const QString typed = event->text();
  const bool isTyped = !typed.isEmpty() && typed[0].isPrint();
  if (isTyped && admitted(typed) != typed) return insertPlainText(admitted(typed));
  QPlainTextEdit::keyPressEvent(event);
}

void MultiLineBox::inputMethodEvent(QInputMethodEvent* event) {
  QInputMethodEvent entered(event->preeditString(), event->attributes());
  entered.setCommitString(admitted(event->commitString()), event->replacementStart(),
                          event->replacementLength());
  QPlainTextEdit::inputMethodEvent(&entered);
}

void MultiLineBox::insertFromMimeData(const QMimeData* source) {
  if (!source->hasText()) return;
  insertPlainText(admitted(source->text()));
  ensureCursorVisible();
}

// What may be put in the place of the selection. Nothing is cut afterwards, so that
// undoing what was entered leaves things as they were before.
QString MultiLineBox::admitted(const QString& text) const {
  const std::size_t replaced = storedText(textCursor().selectedText()).size();
  const std::size_t others = shownText().size() - replaced;
  return cutToStore(asReadBack(text), others < limit_ ? limit_ - others : 0);
}

std::string MultiLineBox::shownText() const {
  // Not toPlainText(), which makes blanks of non-breaking spaces.
  return storedText(document()->toRawText());
}

}  // namespace quorrix
