// The main window's status bar: two panels that share its width.
#pragma once

#include <QStatusBar>
#include <array>

class QLabel;

namespace quorrix {

class TwoPanelStatusBar final : public QStatusBar {
  Q_OBJECT

 public:
  explicit TwoPanelStatusBar(QWidget* parent = nullptr);

  // Panels are numbered from 1. A text too long for its panel is cut off with an
  // ellipsis. The panel's tool tip shows the whole text.
  void setPanelText(int panel, const QString& text);
  [[nodiscard]] QString panelText(int panel) const;

  // In pixels.
  void setPanelWidths(int first, int second);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fitHeight();
  void placePanels();

  std::array<QLabel*, 2> panels_;
  std::array<int, 2> widths_ = {};
};

}  // namespace quorrix
