#include "support/form_looks.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStringBuilder>
#include <QStyle>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <vector>

namespace quorrix::test {
namespace {

constexpr double kReadable = 4.5;

QString nameOf(const QWidget& widget) {
  const QString type = QString::fromLatin1(widget.metaObject()->className());
  const auto* const label = qobject_cast<const QLabel*>(&widget);
  const QString name = label != nullptr ? label->text().left(30) : widget.objectName();
  return type % QStringLiteral(" \"") % name % QLatin1Char('"');
}

// Whether the user sees the widget as one thing; what is inside belongs to the toolkit.
bool isControl(const QWidget& widget) {
  return qobject_cast<const QLabel*>(&widget) != nullptr ||
         qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
         qobject_cast<const QLineEdit*>(&widget) != nullptr ||
         qobject_cast<const QComboBox*>(&widget) != nullptr ||
         qobject_cast<const QAbstractScrollArea*>(&widget) != nullptr;
}

void collectControls(QWidget& parent, std::vector<QWidget*>& controls) {
  for (QObject* const child : parent.children()) {
    auto* const widget = qobject_cast<QWidget*>(child);
    if (widget == nullptr || !widget->isVisible() || widget->isWindow()) continue;
    if (isControl(*widget)) {
      controls.push_back(widget);
    } else {
      collectControls(*widget, controls);
    }
  }
}

std::vector<QWidget*> controlsOf(QWidget& window) {
  std::vector<QWidget*> controls;
  collectControls(window, controls);
  return controls;
}

QRect placeIn(const QWidget& window, const QWidget& widget) {
  return {widget.mapTo(&window, QPoint()), widget.size()};
}

// The place as if the layout went from left to right.
QRect readingPlaceIn(const QWidget& window, const QWidget& widget) {
  return QStyle::visualRect(window.layoutDirection(), window.rect(), placeIn(window, widget));
}

// A label that shows the beginning of its text, and the whole text in a tool tip.
bool isShortened(const QWidget& widget) {
  return qobject_cast<const QLabel*>(&widget) != nullptr && !widget.toolTip().isEmpty();
}

bool isCutOff(const QWidget& widget) {
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) {
    if (label->text().isEmpty()) return false;
    const int needed =
        label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
    return label->width() < label->minimumSizeHint().width() || label->height() < needed;
  }
  // A button with an arrow instead of a text may have any size.
  const auto* const button = qobject_cast<const QAbstractButton*>(&widget);
  if (button != nullptr && button->text().isEmpty()) return false;
  if (button != nullptr) {
    return widget.width() < widget.minimumSizeHint().width() ||
           widget.height() < widget.minimumSizeHint().height();
  }
  return widget.height() < widget.minimumSizeHint().height();
}

// The relative luminance as the accessibility guidelines for the web define it.
double luminanceOf(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double contrastBetween(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({luminanceOf(one), luminanceOf(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

// Half of the painted pixels are lighter than this.
double medianLuminanceOf(QWidget& window) {
  const QImage picture = window.grab().toImage();
  std::vector<double> luminances;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      luminances.push_back(luminanceOf(picture.pixelColor(x, y)));
    }
  }
  const auto middle = luminances.begin() + static_cast<std::ptrdiff_t>(luminances.size() / 2);
  std::nth_element(luminances.begin(), middle, luminances.end());
  return *middle;
}

// Whether someone who reads the window sees `one` before `other`.
bool standsBefore(const QRect& one, const QRect& other) {
  const bool inOneRow = one.top() <= other.bottom() && other.top() <= one.bottom();
  return inOneRow ? one.right() < other.left() : one.bottom() < other.top();
}

// The controls that Tab reaches, in the order of Tab.
std::vector<QWidget*> tabStopsOf(QWidget& window) {
  std::vector<QWidget*> stops;
  const std::vector<QWidget*> controls = controlsOf(window);
  for (QWidget* next = window.nextInFocusChain(); next != &window;
       next = next->nextInFocusChain()) {
    const bool takesPart = (next->focusPolicy() & Qt::TabFocus) != 0 && next->isEnabled();
    if (takesPart && std::ranges::find(controls, next) != controls.end()) stops.push_back(next);
  }
  return stops;
}

QString accessibleNameOf(QWidget& widget) {
  QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&widget);
  return accessible == nullptr ? QString() : accessible->text(QAccessible::Name);
}

}  // namespace

QStringList faultsOfLayout(QWidget& window) {
  QStringList faults;
  const std::vector<QWidget*> controls = controlsOf(window);
  for (auto one = controls.begin(); one != controls.end(); ++one) {
    const QRect place = placeIn(window, **one);
    if (!isShortened(**one)) {
      if (!window.rect().contains(place)) faults += nameOf(**one) % QStringLiteral(" sticks out");
      if (isCutOff(**one)) faults += nameOf(**one) % QStringLiteral(" is cut off");
    }
    for (auto other = one + 1; other != controls.end(); ++other) {
      if (!place.intersects(placeIn(window, **other))) continue;
      faults += nameOf(**one) % QStringLiteral(" overlaps ") % nameOf(**other);
    }
  }
  if (controls.empty()) faults += QStringLiteral("there is nothing in the window");
  return faults;
}

QStringList faultsOfColour(QWidget& window) {
  QStringList faults;
  for (const QWidget* const control : controlsOf(window)) {
    if (!control->isEnabled()) continue;
    const QColor text = control->palette().color(control->foregroundRole());
    const QColor ground = control->palette().color(control->backgroundRole());
    if (contrastBetween(text, ground) < kReadable) {
      faults += nameOf(*control) % QStringLiteral(" cannot be read");
    }
  }
  constexpr double kMiddleGrey = 0.18;
  const bool isDark = luminanceOf(window.palette().color(QPalette::Window)) < kMiddleGrey;
  if ((medianLuminanceOf(window) < kMiddleGrey) != isDark) {
    faults += QStringLiteral("the window is painted in other colours than its palette's");
  }
  return faults;
}

QStringList faultsOfArrangement(QWidget& window) {
  QStringList faults;
  const std::vector<QWidget*> stops = tabStopsOf(window);
  for (std::size_t i = 0; i < stops.size(); ++i) {
    const QWidget& next = *stops[(i + 1) % stops.size()];
    if (!standsBefore(readingPlaceIn(window, next), readingPlaceIn(window, *stops[i]))) continue;
    faults += nameOf(next) % QStringLiteral(" stands before ") % nameOf(*stops[i]);
  }
  // Tab goes from the last one back to the first, which is no fault.
  if (faults.size() == 1) faults.clear();
  for (const QWidget* const control : controlsOf(window)) {
    const auto* const label = qobject_cast<const QLabel*>(control);
    if (label == nullptr || label->buddy() == nullptr) continue;
    if (standsBefore(readingPlaceIn(window, *label), readingPlaceIn(window, *label->buddy())))
      continue;
    faults += nameOf(*label) % QStringLiteral(" stands after its control");
  }
  return faults;
}

QStringList faultsOfTabOrder(QWidget& window) {
  QStringList faults;
  window.activateWindow();
  if (!QTest::qWaitForWindowActive(&window))
    return {QStringLiteral("it does not take the keyboard")};
  std::vector<QWidget*> unreached;
  for (QWidget* const control : controlsOf(window)) {
    const bool takesPart = (control->focusPolicy() & Qt::TabFocus) != 0 && control->isEnabled();
    if (takesPart) unreached.push_back(control);
  }
  const QWidget* const first = window.focusWidget();
  if (first == nullptr) return {QStringLiteral("nothing has the keyboard")};
  const std::size_t farTooMany = 4 * unreached.size() + 4;
  std::size_t stops = 0;
  do {
    QWidget* const stop = window.focusWidget();
    if (accessibleNameOf(*stop).isEmpty()) faults += nameOf(*stop) % QStringLiteral(" has no name");
    unreached.erase(std::remove(unreached.begin(), unreached.end(), stop), unreached.end());
    QTest::keyClick(stop, Qt::Key_Tab);
  } while (window.focusWidget() != first && ++stops < farTooMany);
  if (stops == farTooMany) faults += QStringLiteral("Tab does not come back to where it began");
  for (const QWidget* const control : unreached) {
    // In a group of exclusive buttons, Tab reaches only the chosen one.
    const auto* const button = qobject_cast<const QAbstractButton*>(control);
    if (button != nullptr && button->autoExclusive() && !button->isChecked()) continue;
    faults += nameOf(*control) % QStringLiteral(" is not reached by Tab");
  }
  return faults;
}

}  // namespace quorrix::test
