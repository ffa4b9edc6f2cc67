#include "platform/browsers/browser_presentation.h"

#include <utility>

#include "platform/browsers/address_text.h"

namespace quorrix {
namespace {

std::string webAddressOf(const PageReading& reading) {
  return isWebAddress(reading.address) ? reading.address : std::string();
}

}  // namespace

Presented BrowserPresentation::present(const std::string& frame,
                                       const std::optional<PageReading>& reading,
                                       std::chrono::milliseconds now) {
  Page& page = pages_[frame];
  if (!reading) return {withoutUser(page.address), false};
  take(page, *reading, now);
  if (page.load == 0) return {};
  // A tab that was moved to another window keeps its document.
  const bool isMoved = page.awaitsDocument || page.document == lastDocument_;
  const bool isAnother = page.load != lastLoad_ && lastLoad_ != 0 && !isMoved;
  const bool isVisit = !page.address.empty() && (page.address != lastAddress_ || isAnother);
  lastAddress_ = page.address;
  lastLoad_ = page.load;
  lastDocument_ = page.document;
  return {withoutUser(page.address), isVisit};
}

void BrowserPresentation::take(Page& page, const PageReading& reading,
                               std::chrono::milliseconds now) {
  const std::string address = webAddressOf(reading);
  const bool isNewDocument =
      reading.isComplete && !reading.isAddressNewer && reading.document != page.document;
  if (page.load != 0 && address == page.address) {
    page.candidate.reset();
    return takeDocument(page, reading, now);
  }
  page.replacement.clear();
  if (isNewDocument && !address.empty()) return settle(page, reading, now);
  if (page.candidate != address) {
    page.candidate = address;
    page.candidateSince = now;
  }
  const auto needed = address.empty() ? kNoPageStands : kAddressStands;
  if (now - page.candidateSince >= needed) settle(page, reading, now);
}

// For a reading of the presented address, perhaps with another document.
void BrowserPresentation::takeDocument(Page& page, const PageReading& reading,
                                       std::chrono::milliseconds now) {
  const bool isSame = reading.document == page.document;
  const bool isFresh = now - page.loadedAt < kLoadSettles;
  // A document that keeps loading right after it was presented is that of a tab being
  // restored.
  const bool isGoingOn = reading.isLoading || !reading.isComplete;
  if (isSame) page.awaitsDocument = isGoingOn && (page.awaitsDocument || isFresh);
  if (isSame || !reading.isComplete) return page.replacement.clear();
  if (page.awaitsDocument || isFresh) {
    page.document = reading.document;
    page.awaitsDocument = false;
    return;
  }
  if (page.replacement != reading.document) {
    page.replacement = reading.document;
    page.replacementSince = now;
  }
  if (now - page.replacementSince >= kReloadStands) settle(page, reading, now);
}

void BrowserPresentation::settle(Page& page, const PageReading& reading,
                                 std::chrono::milliseconds now) {
  if (!reading.isComplete || reading.document != page.document) page.loadedAt = now;
  page.load = ++loads_;
  page.address = webAddressOf(reading);
  page.candidate.reset();
  page.replacement.clear();
  page.awaitsDocument = !reading.isComplete;
  if (reading.isComplete) page.document = reading.document;
}

void BrowserPresentation::forgetIdentities() {
  pages_.clear();
  lastDocument_.clear();
  lastLoad_ = 0;
}

}  // namespace quorrix
