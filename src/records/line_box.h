// A one-line text box that shows the entered text as it will be stored: a character that
// is not in the code page becomes "?" at once, and a pasted line break becomes a blank.
#pragma once

#include <QLineEdit>
#include <cstddef>

namespace quorrix {

class LineBox final : public QLineEdit {
  Q_OBJECT

 public:
  // Typing and pasting stop at `limit` characters.
  LineBox(std::size_t limit, QWidget* parent);
};

}  // namespace quorrix
