// A one-line text box that shows the entered text as it will be stored: a character that
// is not in the code page becomes "?" at once, and a pasted line break becomes a blank.
#pragma once

#include <QLineEdit>
#include <cstddef>

#include "platform/code_page.h"

namespace quorrix {

class LineBox final : public QLineEdit {
  Q_OBJECT

 public:
  // Typing and pasting stop at `limit` stored characters. `codePage` must outlive the box.
  LineBox(std::size_t limit, const CodePage& codePage, QWidget* parent);

 protected:
  // Typed and pasted text is converted before it is inserted. A change of inserted text
  // could not be undone.
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;

 private:
  const CodePage& codePage_;
};

}  // namespace quorrix
