#include "records/line_box.h"

#include <QValidator>

#include "records/stored_text.h"

namespace quorrix {
namespace {

QString onOneLine(const QString& text) {
  return asReadBack(text).replace(QLatin1Char('\n'), QLatin1Char(' '));
}

// Accepts every text. A validator is where QLineEdit lets its text be changed before it
// is shown.
class Storing final : public QValidator {
 public:
  using QValidator::QValidator;

  State validate(QString& input, int& cursor) const override {
    const auto before = onOneLine(input.left(cursor)).size();
    input = onOneLine(input);
    cursor = static_cast<int>(before);
    return Acceptable;
  }
};

}  // namespace

LineBox::LineBox(std::size_t limit, QWidget* parent) : QLineEdit(parent) {
  setMaxLength(static_cast<int>(limit));
  setValidator(new Storing(this));
}

}  // namespace quorrix
