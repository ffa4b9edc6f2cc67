#include "records/multi_line_box.h"

#include <QMimeData>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

#include "records/stored_text.h"
#include "shell/plain_text.h"

namespace quorrix {

MultiLineBox::MultiLineBox(std::size_t limit, const CodePage& codePage, QWidget* parent)
    : QTextEdit(parent), limit_(limit), codePage_(codePage) {
  setTabChangesFocus(true);
  setAcceptRichText(false);
  connect(document(), &QTextDocument::contentsChange, this, &MultiLineBox::noteChange);
  // The document may be changed again only after it has notified everyone of the change.
  connect(document(), &QTextDocument::contentsChanged, this, &MultiLineBox::holdToStore);
}

void MultiLineBox::showStored(std::string stored) {
  stored_ = std::move(stored);
  const auto last = stored_.find_last_not_of(' ');
  const std::size_t length = last == std::string::npos ? 0 : last + 1;
  isHolding_ = true;
  setPlainText(toQString(codePage_, std::string_view(stored_).substr(0, length)));
  isHolding_ = false;
  shown_ = text_ = rawText();
  longTexts_ = {shown_};
}

std::string MultiLineBox::value() const {
  const QString raw = rawText();
  if (raw == shown_) return stored_;
  std::string text =
      storedText(codePage_, cutToStore(codePage_, asReadBack(codePage_, raw), limit_));
  if (!text.empty()) text.resize(std::max(text.size(), stored_.size()), ' ');
  return text;
}

void MultiLineBox::insertFromMimeData(const QMimeData* source) {
  if (!source->hasText()) return;
  // A stored character comes from a few characters of the text at most. The rest is cut off
  // here, because laying out a long text takes long.
  constexpr qsizetype kMostForOne = 4;
  insertPlainText(source->text().left(kMostForOne * static_cast<qsizetype>(limit_)));
  ensureCursorVisible();
}

void MultiLineBox::noteChange(int first, int /*removed*/, int added) {
  lastChange_ = {first, added};
}

void MultiLineBox::holdToStore() {
  if (isHolding_) return;
  const QString text = rawText();
  if (text != text_ && !longTexts_.contains(text)) admit(text, changedIn(text));
  text_ = rawText();
  if (storedText(codePage_, text_).size() > limit_) longTexts_.insert(text_);
}

// Replaces `part` of `text`, which was entered last, with the form in which it will be
// stored.
void MultiLineBox::admit(const QString& text, Range part) {
  const QString entered = text.mid(part.first, part.count);
  const std::size_t others =
      storedText(codePage_, QString(text).remove(part.first, part.count)).size();
  const QString admitted =
      cutToStore(codePage_, asReadBack(codePage_, entered), others < limit_ ? limit_ - others : 0);
  if (admitted == inLines(entered)) return;
  const qsizetype end = part.first + part.count;
  const qsizetype position = textCursor().position();
  isHolding_ = true;
  replaceLastChange(text.left(part.first) + admitted + text.mid(end));
  QTextCursor cursor = textCursor();
  const qsizetype inside = std::min(position, part.first + admitted.size());
  cursor.setPosition(
      static_cast<int>(position < end ? inside : position - end + part.first + admitted.size()));
  setTextCursor(cursor);
  isHolding_ = false;
}

// The document reports one range that covers all changes of an edit, and sometimes more. The
// characters at both ends of the range that equal the old text were not entered.
MultiLineBox::Range MultiLineBox::changedIn(const QString& text) const {
  qsizetype first = std::min(lastChange_.first, text.size());
  qsizetype end = std::min(lastChange_.first + lastChange_.count, text.size());
  qsizetype oldEnd = text_.size() - (text.size() - end);
  while (end > first && oldEnd > first && text[end - 1] == text_[oldEnd - 1]) {
    --end;
    --oldEnd;
  }
  while (first < end && first < oldEnd && text[first] == text_[first]) ++first;
  // A mark is stored together with its letter.
  while (first > 0 && first < end && text[first].isMark()) --first;
  return {first, end - first};
}

// Undoes the change and makes the admitted one instead, so that a later undo never brings
// back what was not admitted. Qt merges typed characters into one undo step, so the undo may
// take back earlier characters; `text` holds these too, and they are inserted again.
void MultiLineBox::replaceLastChange(const QString& text) {
  document()->undo();
  const QString wanted = inLines(text);
  const QString before = inLines(rawText());
  if (wanted == before) return document()->clearUndoRedoStacks(QTextDocument::RedoStack);
  const qsizetype shorter = std::min(wanted.size(), before.size());
  qsizetype first = 0;
  while (first < shorter && wanted[first] == before[first]) ++first;
  qsizetype last = 0;  // from the end
  while (last < shorter - first &&
         wanted[wanted.size() - 1 - last] == before[before.size() - 1 - last]) {
    ++last;
  }
  QTextCursor cursor(document());
  cursor.setPosition(static_cast<int>(first));
  cursor.setPosition(static_cast<int>(before.size() - last), QTextCursor::KeepAnchor);
  cursor.insertText(wanted.mid(first, wanted.size() - last - first));
}

QString MultiLineBox::rawText() const {
  // Not toPlainText(), which makes blanks of non-breaking spaces.
  return document()->toRawText();
}

}  // namespace quorrix
