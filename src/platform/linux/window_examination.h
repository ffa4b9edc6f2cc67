// Collects the evidence for and against a browser window being an ordinary one: its
// accessible name, and parts of the window that do not depend on the language. Examines
// only the window's own parts, never a page.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/browsers/window_kind.h"
#include "platform/linux/inquiry.h"

namespace quorrix {

class WindowExamination {
 public:
  WindowExamination(AccessibilityBus& bus, BrowserKind browser, AccessibleId frame)
      : browser_(browser), frame_(std::move(frame)), inquiry_(bus) {}

  // Continues the examination. True once it is complete.
  [[nodiscard]] bool advance();
  [[nodiscard]] bool isThrough() const { return isThrough_; }
  void startOver();

  // Valid once the examination is complete.
  [[nodiscard]] const WindowFindings& findings() const { return findings_; }

 private:
  using Topic = Question::Topic;
  enum class Step { Missing, Done };

  [[nodiscard]] Step look();
  [[nodiscard]] Step lookAtChromium();
  [[nodiscard]] Step lookAtFirefox();
  [[nodiscard]] Step childrenOf(const std::vector<AccessibleId>& parents,
                                std::vector<AccessibleId>& children);
  [[nodiscard]] std::string attribute(const AccessibleId& object, std::string_view name);

  BrowserKind browser_;
  AccessibleId frame_;
  Inquiry inquiry_;
  WindowFindings findings_;
  // Does not change. Chromium has frames without a name, which are examined again and
  // again.
  std::optional<std::uint32_t> role_;
  bool isThrough_ = false;
  bool wasRefused_ = false;  // an answer that the findings depend on
};

}  // namespace quorrix
