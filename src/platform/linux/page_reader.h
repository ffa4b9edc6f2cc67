// Reads the page of one browser window: the document of its selected tab, the
// document's address, and the address bar where that is needed to know it.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/linux/accessibility_bus.h"
#include "platform/linux/accessible_object.h"
#include "platform/linux/address_bar_search.h"
#include "platform/linux/browser_presentation.h"

namespace quorrix {

class PageReader {
 public:
  explicit PageReader(AccessibilityBus& bus) : bus_(bus) {}

  // nullopt when the document is not known: not loaded yet, or no answer in time.
  // The question itself is what makes Chromium build its documents, so that the
  // first one gets no answer and a later one does.
  [[nodiscard]] std::optional<PageReading> read(const AccessibleId& frame,
                                                const Deadline& deadline);

  void forgetFrame(const AccessibleId& frame) { bars_.erase(frame); }
  void clear() { bars_.clear(); }

 private:
  // What is known about the address bar of one window.
  struct Bar {
    std::optional<AddressBarSearch> search;
    std::optional<AccessibleId> id;
    unsigned passesUntilSearch = 0;
    AccessibleId document;  // to which the following belong
    AddressBarReading reading;
    bool isRead = false;
  };

  [[nodiscard]] std::optional<AddressBarReading> readBar(Bar& bar, const AccessibleId& document,
                                                         const Answer& text,
                                                         const Deadline& deadline);
  void searchFor(Bar& bar, const AccessibleId& frame, const Deadline& deadline);

  AccessibilityBus& bus_;
  std::map<AccessibleId, Bar> bars_;  // by frame; only of browsers whose bar is needed
};

}  // namespace quorrix
