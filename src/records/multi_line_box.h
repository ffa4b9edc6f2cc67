// A text box of several lines that shows what will be stored of what is entered: a
// character without a place in the code page turns into "?" at once. Its limit counts
// stored characters, of which a line break is two, CR LF.
#pragma once

#include <QPlainTextEdit>
#include <cstddef>
#include <string>

namespace quorrix {

class MultiLineBox final : public QPlainTextEdit {
  Q_OBJECT

 public:
  // Typing and pasting stop at `limit` stored characters; a longer text that was
  // stored can only be made shorter. Tab leaves the box.
  MultiLineBox(std::size_t limit, QWidget* parent);

  // Shows what was stored, without the blanks behind it, so that the user who
  // clicks there and types goes on where the text ends. May exceed the limit.
  void showStored(std::string stored);

  // What is to be stored. Left as it was shown, it is what was stored, byte for
  // byte; changed, it is padded again to the same length, or empty when nothing
  // is left of it.
  [[nodiscard]] std::string value() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  [[nodiscard]] QString admitted(const QString& text) const;
  [[nodiscard]] std::string shownText() const;

  std::size_t limit_;
  std::string stored_;
};

}  // namespace quorrix
