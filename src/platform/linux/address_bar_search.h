// Looks for the address bar among the objects of one browser window: the entry
// closest to the frame that lies in a tool bar. Level by level, without ever
// entering the document, so that the page's size does not matter; it may be spread
// over several passes and is bounded for windows that have no address bar.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/linux/accessibility_bus.h"
#include "platform/linux/accessible_object.h"

namespace quorrix {

class AddressBarSearch {
 public:
  explicit AddressBarSearch(const AccessibleId& frame) : level_{{frame, false}} {}

  // Goes one or more levels deeper, until `deadline`. True when the search has
  // ended, with or without a result.
  [[nodiscard]] bool advance(AccessibilityBus& bus, const Deadline& deadline);

  [[nodiscard]] const std::optional<AccessibleId>& found() const { return found_; }

 private:
  struct Place {
    AccessibleId id;
    bool isInToolBar = false;
  };

  [[nodiscard]] bool descend(AccessibilityBus& bus, const Deadline& deadline);

  std::vector<Place> level_;  // containers of one depth, still to be looked into
  std::optional<AccessibleId> found_;
  std::size_t looked_ = 0;
};

}  // namespace quorrix
