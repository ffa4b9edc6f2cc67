// A strip in the main window, above the status bar, that names the browsers whose pages
// cannot be read and says what to do. It is hidden while there is nothing to say, and
// never takes the keyboard focus by itself. Screen readers read it out.
#pragma once

#include <QAccessible>
#include <QFrame>
#include <functional>
#include <vector>

#include "platform/window_system.h"
#include "shell/guarded.h"

class QLabel;

namespace quorrix {

class UnreadableBrowserNotice final : public QFrame {
  Q_OBJECT

 public:
  // Sends an event to the platform's screen readers.
  using Announce = std::function<void(QAccessibleEvent&)>;

  UnreadableBrowserNotice(
      QWidget* parent, SlotRunner run, Announce announce = [](QAccessibleEvent& event) {
        QAccessible::updateAccessibility(&event);
      });

  // Shows the text about these browsers instead of the previous one. A dismissed browser
  // is left out for good, unless its reason is now a different one.
  void showBrowsers(const std::vector<UnreadableBrowser>& browsers);

  // Places the strip at the bottom of its parent, whose size in pixels is `room`. Returns
  // the height of the strip; 0 if it is hidden.
  int placeAtBottomOf(const QSize& room);

 signals:
  // The strip was shown or hidden, or its text changed, which may change its height.
  void changed();

 private:
  void dismiss();
  void showText();
  void giveKeyboardBack();
  void announce(QAccessible::Event what);

  SlotRunner run_;
  Announce announce_;
  QLabel* text_;
  std::vector<UnreadableBrowser> shown_;
  std::vector<UnreadableBrowser> dismissed_;
};

}  // namespace quorrix
