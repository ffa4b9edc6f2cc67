#include "main_window/two_panel_status_bar.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>

#include "shell/plain_text.h"
#include "shell/single_line.h"

namespace quorrix {
namespace {

constexpr int kTextMargin = 4;  // pixels around a panel's text

class Panel final : public QLabel {
 public:
  explicit Panel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setFrameStyle(QFrame::Panel | QFrame::Sunken);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    drawFrame(&painter);
    painter.end();
    drawSingleLine(*this, contentsRect().adjusted(kTextMargin, 0, -kTextMargin, 0),
                   Qt::AlignLeft | Qt::AlignVCenter);
  }
};

}  // namespace

TwoPanelStatusBar::TwoPanelStatusBar(QWidget* parent) : QStatusBar(parent) {
  setObjectName(QStringLiteral("StatusBar"));
  setSizeGripEnabled(false);
  int number = 1;
  for (QLabel*& panel : panels_) {
    panel = new Panel(this);
    panel->setObjectName(QStringLiteral("StatusBarPanel%1").arg(number++));
  }
  fitHeight();
}

void TwoPanelStatusBar::setPanelText(int panel, const QString& text) {
  QLabel* const label = panels_[static_cast<std::size_t>(panel - 1)];
  label->setText(text);
  label->setToolTip(text.isEmpty() ? QString() : asToolTip(text));
}

QString TwoPanelStatusBar::panelText(int panel) const {
  return panels_[static_cast<std::size_t>(panel - 1)]->text();
}

void TwoPanelStatusBar::setPanelWidths(int first, int second) {
  widths_ = {first, second};
  placePanels();
}

void TwoPanelStatusBar::resizeEvent(QResizeEvent* event) {
  QStatusBar::resizeEvent(event);
  placePanels();
}

void TwoPanelStatusBar::changeEvent(QEvent* event) {
  QStatusBar::changeEvent(event);
  if (event->type() == QEvent::FontChange) fitHeight();
}

void TwoPanelStatusBar::fitHeight() { setFixedHeight(fontMetrics().height() + 2 * kTextMargin); }

void TwoPanelStatusBar::placePanels() {
  int left = 0;
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    panels_[i]->setGeometry(
        QStyle::visualRect(layoutDirection(), rect(), QRect(left, 0, widths_[i], height())));
    left += widths_[i];
  }
}

}  // namespace quorrix
