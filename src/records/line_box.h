// A text box of one line whose text is limited by what is stored of it, which is
// one character for each that the user sees.
#pragma once

#include <QLineEdit>
#include <cstddef>

namespace quorrix {

class LineBox final : public QLineEdit {
  Q_OBJECT

 public:
  // Typing and pasting stop at `limit` stored characters. A pasted line break
  // becomes a blank.
  LineBox(std::size_t limit, QWidget* parent);

 private:
  void takeEdited();

  std::size_t limit_;
};

}  // namespace quorrix
