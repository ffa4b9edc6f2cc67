// The windows of the browsers on the accessibility bus, the one used last first,
// and for each whether it is an ordinary one.
//
// A window that has been active is known to have been used. Of several ordinary
// windows of which none is known to have been used, as when tracking starts over
// them, the topmost of the desktop's stack counts as the one used last. Without a
// stack none of them counts, so that a page nobody is viewing is not recorded.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/browser_programs.h"
#include "platform/linux/session_name_owner.h"
#include "platform/linux/window_examination.h"

namespace quorrix {

// Titles of the desktop's windows, UTF-8, topmost first. nullopt while they are not
// known yet; empty where the desktop does not tell.
using WindowStack = std::function<std::optional<std::vector<std::string>>()>;

class BrowserWindows {
 public:
  struct Window {
    AccessibleId id;
    BrowserKind browser{};
    std::string name;  // its accessible name, UTF-8, as last read
    WindowKind kind = WindowKind::Unsettled;
    bool wasUsed = false;  // since the order was last forgotten
    bool hasOrdinaryMark = false;
    std::chrono::milliseconds firstSeen{};
    std::unique_ptr<WindowExamination> examination;  // null once the kind is settled
  };

  BrowserWindows(AccessibilityBus& bus, Clock& clock, WindowStack stack,
                 std::function<void(const AccessibleId&)> onClosed);

  // Begins to ask what this pass wants to know.
  void beginPass();

  // Goes on with what was begun. True when nothing is left to wait for.
  [[nodiscard]] bool advance();

  // Ordinary windows in order; none while their order is not known.
  [[nodiscard]] std::vector<const Window*> ordinary() const;

  [[nodiscard]] const std::vector<Window>& all() const { return windows_; }
  [[nodiscard]] const std::map<std::string, BrowserProgram>& programs() const {
    return programs_.browsers();
  }

  // To be called with the name that a window has now, read together with its page.
  // False when it is not an ordinary window's. Where the name alone decided, the window
  // is private from then on.
  [[nodiscard]] bool takeName(const AccessibleId& id, const std::string& name);

  // To be called when the list was not kept up for a while. What is still to be answered
  // about that time is dropped.
  void forgetOrder();

  // The bus is another one: forgets everything without telling `onClosed`.
  void clear();

 private:
  // What is asked of one browser.
  struct Watch {
    explicit Watch(AccessibilityBus& bus) : greeting(bus), list(bus), activity(bus) {}

    Inquiry greeting;
    Inquiry list;
    bool isListing = false;
    bool wasListed = false;
    std::chrono::milliseconds since{};  // when the program was found
    Inquiry activity;
    std::vector<AccessibleId> asked;  // windows whose states were asked for
    std::chrono::milliseconds askedAt{};
  };

  void watchNewPrograms();
  void dropGonePrograms();
  [[nodiscard]] bool advanceLists();
  void takeWindows(const BrowserProgram& program, const std::vector<AccessibleId>& children);
  [[nodiscard]] bool examineWindows();
  void settle(Window& window);
  [[nodiscard]] bool isDueForALook(const Window& window) const;
  void askForStates(const AccessibleId& id);
  [[nodiscard]] bool advanceActivity();
  [[nodiscard]] bool takeActivity();
  void askWhichOfTheOthersIsActive();
  void findTopmost();
  void noteIsActive(const AccessibleId& id);
  void noteIsUsed(const AccessibleId& id);
  [[nodiscard]] std::vector<Window>::iterator find(const AccessibleId& id);
  [[nodiscard]] bool isOrderKnown() const;
  [[nodiscard]] bool isListMissing() const;
  [[nodiscard]] bool isStillLooking() const;
  [[nodiscard]] bool mayTurnOutOrdinary(const Window& window) const;
  template <typename Gone>
  void eraseWindows(Gone gone);

  AccessibilityBus& bus_;
  Clock& clock_;
  WindowStack stack_;
  std::function<void(const AccessibleId&)> onClosed_;
  BrowserPrograms programs_;
  WindowKinds kinds_;
  SessionNameOwner gnomeWeb_;
  std::map<std::string, Watch> watches_;  // by unique bus name
  std::vector<Window> windows_;           // in order
  std::chrono::milliseconds orderUnknownSince_{};
  unsigned pass_ = 0;
  bool isActiveOneKnown_ = false;  // in this pass
  bool wereOthersAsked_ = false;   // in this pass
  std::size_t nextOther_ = 0;
};

}  // namespace quorrix
