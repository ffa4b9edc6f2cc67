// A text box of one line that shows what will be stored of what is entered: a
// character without a place in the code page turns into "?" at once, a pasted line
// break into a blank.
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
