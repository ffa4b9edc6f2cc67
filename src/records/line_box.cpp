#include "records/line_box.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QValidator>
#include <algorithm>

#include "records/stored_text.h"
#include "shell/plain_text.h"

namespace quorrix {
namespace {

QString onOneLine(const CodePage& codePage, const QString& text) {
  return asReadBack(codePage, text).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

// Accepts every text. A validator is where QLineEdit lets its text be changed before it
// is shown.
class Storing final : public QValidator {
 public:
  Storing(std::size_t limit, const CodePage& codePage, QObject* parent)
      : QValidator(parent), limit_(limit), codePage_(codePage) {}

  // A letter that is stored as two characters may exceed the limit. It is then taken back;
  // the text after the cursor stays.
  State validate(QString& input, int& cursor) const override {
    const QString after = onOneLine(codePage_, input.mid(cursor));
    const std::size_t taken = std::min(fromQString(codePage_, after).size(), limit_);
    const QString before =
        cutToStore(codePage_, onOneLine(codePage_, input.left(cursor)), limit_ - taken);
    input = before + after;
    cursor = static_cast<int>(before.size());
    return Acceptable;
  }

 private:
  std::size_t limit_;
  const CodePage& codePage_;
};

}  // namespace

LineBox::LineBox(std::size_t limit, const CodePage& codePage, QWidget* parent)
    : QLineEdit(parent), codePage_(codePage) {
  setMaxLength(static_cast<int>(limit));
  setValidator(new Storing(limit, codePage, this));
}

void LineBox::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Paste)) {
    const QString pasted = QApplication::clipboard()->text();
    const QString stored = onOneLine(codePage_, pasted);
    return stored == pasted ? paste() : insert(stored);
  }
  const QString stored = onOneLine(codePage_, event->text());
  const bool isTyped = !event->text().isEmpty() && event->text().front().isPrint();
  if (!isTyped || stored == event->text()) return QLineEdit::keyPressEvent(event);
  QKeyEvent converted(event->type(), event->key(), event->modifiers(), stored,
                      event->isAutoRepeat());
  QLineEdit::keyPressEvent(&converted);
}

void LineBox::inputMethodEvent(QInputMethodEvent* event) {
  QInputMethodEvent converted(event->preeditString(), event->attributes());
  converted.setCommitString(onOneLine(codePage_, event->commitString()), event->replacementStart(),
                            event->replacementLength());
  QLineEdit::inputMethodEvent(&converted);
}

}  // namespace quorrix
