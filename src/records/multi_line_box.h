// A multi-line text box that shows the entered text as it will be stored: a character
// that is not in the code page becomes "?" at once. The limit counts stored characters; a
// line break counts as two (CR LF). Both rules apply to every change of the text, whether
// it is typed, pasted, dropped, or made by an input method or assistive technology.
#pragma once

#include <QSet>
#include <QTextEdit>
#include <cstddef>
#include <string>

#include "platform/code_page.h"

namespace quorrix {

class MultiLineBox final : public QTextEdit {
  Q_OBJECT

 public:
  // A change cannot make the text longer than `limit` stored characters. A stored text
  // that exceeds the limit can only be made shorter. Tab leaves the box. `codePage` must
  // outlive the box.
  MultiLineBox(std::size_t limit, const CodePage& codePage, QWidget* parent);

  // Shows a stored text without its trailing blanks, so that a user who clicks after the
  // text and types continues right where it ends. The text may exceed the limit.
  void showStored(std::string stored);

  // The text to store. An unchanged text is returned as it was stored, byte for byte. A
  // changed text is cut to the limit and, if it is then shorter than the stored text was,
  // padded with blanks to that length. If nothing is left of it, the result is empty.
  [[nodiscard]] std::string value() const;

 protected:
  void insertFromMimeData(const QMimeData* source) override;

 private:
  // A part of the text, in UTF-16 code units.
  struct Range {
    qsizetype first;
    qsizetype count;
  };

  void noteChange(int first, int removed, int added);
  void holdToStore();
  [[nodiscard]] Range changedIn(const QString& text) const;
  void admit(const QString& text, Range part);
  void replaceLastChange(const QString& text);
  [[nodiscard]] QString rawText() const;

  std::size_t limit_;
  const CodePage& codePage_;
  std::string stored_;
  QString shown_;            // as showStored() showed it
  QString text_;             // as of the last change
  Range lastChange_{0, 0};   // in the current text
  QSet<QString> longTexts_;  // beyond the limit; undoing may bring them back
  bool isHolding_ = false;
};

}  // namespace quorrix
