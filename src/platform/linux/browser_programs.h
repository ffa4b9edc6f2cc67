// The browsers among the programs on the accessibility bus, told by the names that
// a program and its toolkit give themselves, never by a window's title. No other
// program is asked anything beyond these names.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "platform/browsers/browser_kind.h"
#include "platform/clock.h"
#include "platform/linux/inquiry.h"

namespace quorrix {

struct BrowserProgram {
  AccessibleId root;
  BrowserKind kind{};
  std::uint32_t processId = 0;  // 0 when the bus does not tell
};

class BrowserPrograms {
 public:
  BrowserPrograms(AccessibilityBus& bus, Clock& clock) : bus_(bus), clock_(clock), list_(bus) {}

  // Begins a new look at the list of programs, unless one is under way.
  void beginLook();

  // Goes on with what was begun. True when nothing is left to wait for.
  [[nodiscard]] bool advance();

  // By unique bus name.
  [[nodiscard]] const std::map<std::string, BrowserProgram>& browsers() const { return browsers_; }

  // The bus is another one.
  void clear();

 private:
  // A program of which it is not known yet whether it is a browser.
  struct Candidate {
    explicit Candidate(AccessibilityBus& bus, AccessibleId program)
        : root(std::move(program)), inquiry(bus) {}

    AccessibleId root;
    Inquiry inquiry;
    std::chrono::milliseconds nextTry{};
    std::chrono::milliseconds interval{};
    bool isRejected = false;
  };

  void takeList();
  [[nodiscard]] bool vet(Candidate& candidate);

  AccessibilityBus& bus_;
  Clock& clock_;
  Inquiry list_;
  bool isListing_ = false;
  std::map<std::string, Candidate> candidates_;  // by unique bus name
  std::map<std::string, BrowserProgram> browsers_;
};

}  // namespace quorrix
