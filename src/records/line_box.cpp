#include "records/line_box.h"

#include <QValidator>
#include <algorithm>

#include "records/stored_text.h"
#include "shell/plain_text.h"

namespace quorrix {
namespace {

// Accepts every text. A validator is where QLineEdit lets its text be changed before it
// is shown.
class Storing final : public QValidator {
 public:
  Storing(std::size_t limit, const CodePage& codePage, QObject* parent)
      : QValidator(parent), limit_(limit), codePage_(codePage) {}

  // A letter that is stored as two characters may exceed the limit. It is then taken back;
  // the text after the cursor stays.
  State validate(QString& input, int& cursor) const override {
    const QString after = onOneLine(input.mid(cursor));
    const std::size_t taken = std::min(fromQString(codePage_, after).size(), limit_);
    const QString before = cutToStore(codePage_, onOneLine(input.left(cursor)), limit_ - taken);
    input = before + after;
    cursor = static_cast<int>(before.size());
    return Acceptable;
  }

 private:
  [[nodiscard]] QString onOneLine(const QString& text) const {
    return asReadBack(codePage_, text).replace(QLatin1Char('\n'), QLatin1Char(' '));
  }

  std::size_t limit_;
  const CodePage& codePage_;
};

}  // namespace

LineBox::LineBox(std::size_t limit, const CodePage& codePage, QWidget* parent) : QLineEdit(parent) {
  setMaxLength(static_cast<int>(limit));
  setValidator(new Storing(limit, codePage, this));
}

}  // namespace quorrix
