// A label for a text that the user entered. It shows the text on one line, shortened with
// dots if there is not enough room, and completely in the tool tip. No character has a
// special meaning.
#pragma once

#include <QLabel>

namespace quorrix {

class LiteralLabel final : public QLabel {
  Q_OBJECT

 public:
  LiteralLabel(const char* name, QWidget* parent);

  void showText(const QString& text);

  // A width of 0: the label takes the room that is available, however long the text is.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quorrix
