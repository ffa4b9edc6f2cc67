#include "platform/linux/browser_presentation.h"

#include <utility>

#include "platform/linux/address_text.h"

namespace quorrix {

Presented BrowserPresentation::present(const std::string& frame,
                                       const std::optional<PageReading>& reading) {
  if (!reading) {
    const auto known = pages_.find(frame);
    return {known == pages_.end() ? std::string() : withoutUser(known->second.address), false};
  }
  Page& page = pages_[frame];
  if (isCompleted(page, *reading)) {
    if (last_.document == page.document) last_.document = reading->document;
    page.document = reading->document;
  }
  if (page.document != reading->document || page.documentAddress != reading->address) {
    page = Page{};
    page.document = reading->document;
    page.documentAddress = reading->address;
    if (isWebAddress(reading->address)) page.address = reading->address;
  }
  page.hasBar = reading->bar.has_value();
  if (reading->bar && !page.address.empty()) settleBar(page, *reading->bar);
  Presented presented{withoutUser(page.address), isVisit(page)};
  last_ = page;
  return presented;
}

bool BrowserPresentation::isCompleted(const Page& page, const PageReading& reading) {
  return !page.document.empty() && page.documentAddress == reading.address && !page.hasBar &&
         reading.bar;
}

void BrowserPresentation::settleBar(Page& page, const AddressBarReading& bar) {
  const bool isSteady = std::exchange(page.barBefore, bar.text) == bar.text;
  const bool wasFocused = std::exchange(page.wasFocused, bar.isFocused);
  if (bar.isFocused) {
    page.isBarTyped = true;
    return;
  }
  const std::optional<std::string> address = addressFromBar(page.documentAddress, bar.text);
  const bool isPresented = address == page.address;
  if (isPresented || (!isSteady && !wasFocused)) page.isBarTyped = false;
  if (!address || bar.documentBusy || page.isBarTyped || !isSteady) return;
  page.address = *address;
  page.isFromBar = *address != page.documentAddress;
}

bool BrowserPresentation::isVisit(const Page& page) const {
  if (page.address.empty()) return false;
  if (page.address != last_.address) return true;
  const bool sameVisit = last_.document.empty() || last_.isFromBar;
  return page.document != last_.document && !sameVisit;
}

void BrowserPresentation::forgetIdentities() {
  pages_.clear();
  last_.document.clear();
}

}  // namespace quorrix
