// A text box of several lines whose text is limited by what is stored of it: a
// line break counts as two characters, CR LF.
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

 private:
  void cutToLimit();
  [[nodiscard]] std::string shownText() const;

  std::size_t limit_;
  std::string stored_;
  std::size_t size_ = 0;  // of the text shown, in stored characters
  int lastChange_ = 0;    // where the latest insertion ends
};

}  // namespace quorrix
