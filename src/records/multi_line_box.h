// A text box of several lines that shows what will be stored of what is entered: a
// character without a place in the code page turns into "?" at once. Its limit counts
// stored characters, of which a line break is two, CR LF. Both hold for every change of
// the text, whether it is typed, pasted, dropped, or made by an input method or by
// assistive technology.
#pragma once

#include <QPlainTextEdit>
#include <QSet>
#include <cstddef>
#include <string>

namespace quorrix {

class MultiLineBox final : public QPlainTextEdit {
  Q_OBJECT

 public:
  // A change goes no further than `limit` stored characters; a longer text that was
  // stored can only be made shorter. Tab leaves the box.
  MultiLineBox(std::size_t limit, QWidget* parent);

  // Shows what was stored, without the blanks behind it, so that the user who
  // clicks there and types goes on where the text ends. May exceed the limit.
  void showStored(std::string stored);

  // What is to be stored. Left as it was shown, it is what was stored, byte for
  // byte; changed, it is at most the limit, padded again to the same length, or
  // empty when nothing is left of it.
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
  std::string stored_;
  QString shown_;            // of what was stored
  QString text_;             // as of the last change
  Range lastChange_{0, 0};   // of the text that is there now
  QSet<QString> longTexts_;  // beyond the limit; undoing may bring them back
  bool isHolding_ = false;
};

}  // namespace quorrix
