// A strip in the main window, above the status bar, that names the browsers whose
// pages cannot be read and says what to do. It is hidden while there is nothing to
// say, and never takes the keyboard. Screen readers read it out.
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
  // Tells the platform's screen readers of an event.
  using Announce = std::function<void(QAccessibleEvent&)>;

  UnreadableBrowserNotice(
      QWidget* parent, SlotRunner run, Announce announce = [](QAccessibleEvent& event) {
        QAccessible::updateAccessibility(&event);
      });

  // Shows what is to say of these browsers in place of what was said before. A browser
  // that was dismissed is left out for good, except for another reason than then.
  void showBrowsers(const std::vector<UnreadableBrowser>& browsers);

  // Takes the place at the bottom of its parent, which is so large, in pixels. Returns
  // the height of that place; 0 when hidden.
  int placeAtBottomOf(const QSize& room);

 signals:
  // It was shown or hidden, or another text needs another height.
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
