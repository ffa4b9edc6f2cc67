// A label for a text of the user's: on one line, with dots where there is no room
// for all of it, and whole in the tool tip. No character means anything but itself.
#pragma once

#include <QLabel>

namespace quorrix {

class LiteralLabel final : public QLabel {
  Q_OBJECT

 public:
  LiteralLabel(const char* name, QWidget* parent);

  void showText(const QString& text);

  // As wide as there is room, however long the text is.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quorrix
