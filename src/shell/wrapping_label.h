// A label for plain text of several lines. A word that is too long for a line, such as a
// folder's path, is broken at the end of the line. The text itself stays unchanged, so a
// screen reader reads it as it was set.
#pragma once

#include <QLabel>

namespace quorrix {

class WrappingLabel final : public QLabel {
  Q_OBJECT

 public:
  WrappingLabel(const QString& text, QWidget* parent);

  // In pixels. Lines are as long as the text needs, up to about sixty characters and half
  // of the screen.
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quorrix
