// The windows of the browsers on the accessibility bus, most recently used first, and for
// each whether it is an ordinary one.
//
// A window that has been active is known to have been used. If there are several ordinary
// windows and none is known to have been used, as when tracking starts while they are
// open, the topmost one in the desktop's stack counts as the one used last. Without a
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

// Titles of the desktop's windows, UTF-8, topmost first. nullopt while they are not known
// yet; empty if the desktop does not report them.
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

  // Starts asking this pass's questions.
  void beginPass();

  // Continues what was started. True if nothing is left to wait for.
  [[nodiscard]] bool advance();

  // Ordinary windows in order; empty while their order is not known.
  [[nodiscard]] std::vector<const Window*> ordinary() const;

  [[nodiscard]] const std::vector<Window>& all() const { return windows_; }
  [[nodiscard]] const std::map<std::string, BrowserProgram>& programs() const {
    return programs_.browsers();
  }

  // To be called with the current name of a window, read together with its page. False if
  // the name or the window is not an ordinary one. A window without the ordinary mark
  // becomes private if the name is not ordinary.
  [[nodiscard]] bool takeName(const AccessibleId& id, const std::string& name);

  // To be called when the list was not kept up to date for a while. Pending answers about
  // that time are dropped.
  void forgetOrder();

  // To be called when the connection to the bus is a new one. Forgets everything without
  // calling `onClosed`.
  void clear();

 private:
  // The questions to one browser.
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
  void takeWindows(const BrowserProgram& program, const std::vector<AccessibleId>& ids);
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
