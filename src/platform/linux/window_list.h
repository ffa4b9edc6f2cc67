// The top-level windows of all programs on the accessibility bus, the one used
// last first. Asks as little as keeps that order right: only programs of which the
// scan has read a window, its browsers, are looked at in every pass.
//
// A window that has been active is known to have been used. Of several browser
// windows that are found with none of them known to have been, as when tracking
// starts over them, the topmost of the desktop's stack counts as the one used last;
// where there is no such stack all of them stay out of the list until one is used,
// lest a page be taken for visited that nobody looks at.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/accessibility_bus.h"
#include "platform/linux/accessible_object.h"

namespace quorrix {

class WindowList {
 public:
  struct Window {
    AccessibleId id;
    bool isFrame = false;  // other children of programs are known only to be left out
    std::string title;     // UTF-8, as last asked for
    bool wasUsed = false;  // since the order was last forgotten
  };

  struct Desktop {
    std::function<bool(std::string_view title)> isBrowserTitle;     // in Windows-1252
    std::function<std::vector<std::string>()> titlesOfWindowStack;  // topmost first, UTF-8
  };

  WindowList(AccessibilityBus& bus, Desktop desktop,
             std::function<void(const AccessibleId&)> onClosed)
      : bus_(bus), desktop_(std::move(desktop)), onClosed_(std::move(onClosed)) {}

  // Once per pass, before anything else is asked. What does not answer in time
  // stays as it was.
  void refresh(const Deadline& deadline);

  // Frames with a title, in order; without the browsers' while theirs is not known.
  [[nodiscard]] std::vector<AccessibleId> frames() const;

  // A browser's title is asked for in every pass, another program's now and then.
  // Empty when the window is gone.
  [[nodiscard]] std::string titleOf(const AccessibleId& frame, const Deadline& deadline);

  // To be called when the scan goes on to read the window behind the title.
  void noteIsRead(const AccessibleId& frame);

  // To be called when the list has not been kept up for a while.
  void forgetOrder();

  // The bus is another one: forgets everything without a word to `onClosed`.
  void clear();

 private:
  struct Program {
    AccessibleId root;
    bool isVetted = false;   // whether it is our own process is known
    bool isOurs = false;     // never asked anything: we could not answer while we wait
    bool isListed = false;   // its windows have been asked for once
    bool isBrowser = false;  // the scan has read a window of it
  };

  void askKnownPrograms(const Deadline& deadline);
  void takePrograms(const std::vector<AccessibleId>& roots);
  void takeWindows(Program& program, const std::vector<AccessibleId>& children);
  void vetNewPrograms(const Deadline& deadline);
  void listNewPrograms(const Deadline& deadline);
  void lookAtWindows(const Deadline& deadline);
  void findActiveAmongOthers(const Deadline& deadline);
  void findTopmostBrowser();
  void noteIsUsed(const AccessibleId& id);
  void takeLook(const AccessibleId& id, const Answer* role, const Answer& name,
                const Answer& state);
  [[nodiscard]] std::vector<Window>::iterator find(const AccessibleId& id);
  [[nodiscard]] bool belongsToBrowser(const AccessibleId& id) const;
  [[nodiscard]] bool isBrowserFrame(const Window& window) const;
  [[nodiscard]] bool isOrderKnown() const;
  [[nodiscard]] const Window* frontBrowserFrame() const;
  template <typename Gone>
  void eraseWindows(Gone gone);

  AccessibilityBus& bus_;
  Desktop desktop_;
  std::function<void(const AccessibleId&)> onClosed_;
  std::map<std::string, Program> programs_;  // by unique bus name
  std::vector<Window> windows_;              // in order
  std::vector<AccessibleId> newcomers_;      // windows about which nothing is known yet
  unsigned pass_ = 0;
  bool isThorough_ = false;     // this pass looks at the other programs too
  bool frontIsActive_ = false;  // in this pass
};

}  // namespace quorrix
