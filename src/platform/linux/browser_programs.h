// Finds the browsers among the programs on the accessibility bus, by the names that a
// program and its toolkit report, never by a window's title. Other programs are asked for
// nothing beyond these names.
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
  std::uint32_t processId = 0;  // 0 if the bus does not report it
};

class BrowserPrograms {
 public:
  BrowserPrograms(AccessibilityBus& bus, Clock& clock) : bus_(bus), clock_(clock), list_(bus) {}

  // Starts reading the list of programs again, unless that is under way.
  void beginLook();

  // Continues what was started. True if nothing is left to wait for.
  [[nodiscard]] bool advance();

  // By unique bus name.
  [[nodiscard]] const std::map<std::string, BrowserProgram>& browsers() const { return browsers_; }

  // To be called when the connection to the bus is a new one.
  void clear();

 private:
  // A program that is not, or not yet, known to be a browser.
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
