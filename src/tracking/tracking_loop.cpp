#include "tracking/tracking_loop.h"

#include <utility>

#include "platform/failure.h"

namespace quorrix {
namespace {

constexpr std::string_view kTracking = "Tracking websites.";
constexpr std::string_view kTrackingStopped = "Tracking websites stopped.";
constexpr std::string_view kTooMuchData =
    "Error: Quorrix is unable to record the site address because it has too much data to manage. "
    "Archive the presently displayed sites to correct the problem. Quorrix will not be able to "
    "record site data until the current display is archived.";

// A locked file is tried again after this many passes, about two seconds. It is not tried
// more often because each try may block the window for kLockPatience.
constexpr unsigned kPassesBetweenWriting = 20;

}  // namespace

void TrackingLoop::startTracking() {
  isTracking_ = true;
  trackWebsites();
}

void TrackingLoop::stopTracking() {
  isTracking_ = false;
  parts_.display.showTrackingStatus(kTrackingStopped);
  showUnreadable({});
  parts_.events.processPending();
}

void TrackingLoop::stopAfterFailure() {
  isTracking_ = false;
  parts_.display.showTrackingStatus(kTrackingStopped);
  showUnreadable({});
}

void TrackingLoop::trackWebsites() {
  try {
    scanUntilStopped();
  } catch (...) {
    writeVisitsBeforeFailure();
    throw;
  }
  writeLastVisits();
}

void TrackingLoop::scanUntilStopped() {
  parts_.display.showTrackingStatus(kTracking);
  parts_.windows.prepareForTracking();
  reading_.haveValidAddress = false;
  bool isFirstPass = true;
  while (isTracking_) {
    scanBrowserWindows(parts_.windows, reading_);
    showUnreadable(parts_.windows.unreadableBrowsers());
    const bool isVisit = reading_.haveValidAddress || isFirstPass;
    if (isVisit && reading_.webAddress.size() <= kMaxAddressLength) recordVisit();
    writeVisitsAgain();
    reading_.haveValidAddress = false;
    isFirstPass = false;
    parts_.events.processPending();
    if (isTracking_) parts_.events.pause(parts_.windows.timeToNextPass());
  }
}

void TrackingLoop::showUnreadable(std::vector<UnreadableBrowser> browsers) {
  if (browsers == unreadable_) return;
  unreadable_ = std::move(browsers);
  parts_.display.showUnreadableBrowsers(unreadable_);
}

void TrackingLoop::recordVisit() {
  if (reading_.webAddress.empty()) return;
  const AddressCheck check = validateAddress(reading_.webAddress);
  if (!check.isValid) return;
  reading_.webAddress = storedAddress(reading_.webAddress);
  // A copy, because a second loop that runs while a message box is open overwrites
  // webAddress.
  const std::string address = reading_.webAddress;
  const auto filed = addAddressToTree(address);
  if (!filed) return;
  visits_.push_back({address, check.protocolFlag, *filed});
  if (visits_.size() == 1) writeVisits();
}

// Writes the visits in their order. While another program has the site file locked, they
// wait, and tracking continues.
void TrackingLoop::writeVisits() {
  while (!visits_.empty()) {
    try {
      write(visits_.front());
    } catch (const Failure& failure) {
      if (failure.isFileInUse()) {
        passesUntilWriting_ = kPassesBetweenWriting;
        return;
      }
      giveVisitsUp();
      throw;
    } catch (...) {
      giveVisitsUp();
      throw;
    }
    unwritten_.erase(visits_.front().address);
    visits_.pop_front();
  }
}

// The nodes of these visits stay in the tree. Without this note, a later visit would count
// as one to a known address and look for a record to update, and find none.
void TrackingLoop::giveVisitsUp() {
  for (Visit& visit : visits_) {
    if (visit.filed == Filed::New) unwritten_.insert(std::move(visit.address));
  }
  visits_.clear();
}

void TrackingLoop::writeVisitsAgain() {
  if (visits_.empty() || --passesUntilWriting_ > 0) return;
  writeVisits();
}

// Waiting visits are written before tracking ends, because the user may then clear or
// archive the display. The failure that ends tracking is reported anyway, so visits that
// are lost with it are not reported separately.
void TrackingLoop::writeVisitsBeforeFailure() {
  try {
    writeVisits();
  } catch (...) {
    // Writing the file failed, too.
  }
  giveVisitsUp();
}

// Visits that still cannot be written are lost. The failure thrown reports this to the
// user, unless the main window is closing.
void TrackingLoop::writeLastVisits() {
  writeVisits();
  if (visits_.empty()) return;
  giveVisitsUp();
  if (!isAbandoned_) throw Failure::ofFileInUse();
}

// If there was no memory for the node, the record is still written before this fails.
void TrackingLoop::write(const Visit& visit) {
  SiteTree& tree = parts_.tree;
  const NodeId node = tree.find(visit.address);
  const std::uint64_t record = writeRecord(visit, node);
  if (node == kNoNode) throw Failure(failure::kElementNotFound);
  tree.setRecordNumber(node, record);
  parts_.display.makeVisible(node);
  tree.select(node);
  tree.setTag(node, visit.protocolFlag);
  tagAncestors(node, visit.protocolFlag);
}

// Returns the number of the record that an update of this address would find, or 0 if it
// is unknown. It is unknown after an append, because the file may have an older record of
// the same address, from before the site was cleared from the display.
std::uint64_t TrackingLoop::writeRecord(const Visit& visit, NodeId node) {
  if (visit.filed == Filed::New) {
    parts_.siteFile.appendSiteRecord(visit.address, visit.protocolFlag);
    return 0;
  }
  const std::uint64_t likely = node == kNoNode ? 0 : parts_.tree.recordNumber(node);
  const std::uint64_t updated =
      parts_.siteFile.updateSiteRecord(visit.address, visit.protocolFlag, likely);
  // A write that was reported as failed may have left the record all the same.
  if (updated == 0 && unwritten_.contains(visit.address)) {
    parts_.siteFile.appendSiteRecord(visit.address, visit.protocolFlag);
  }
  return updated;
}

// Returns nullopt only if the tree is too large to be searched; a message was then shown,
// and no level was added. A node is in the tree only if all its ancestors are, so one
// search for the whole address is enough for all its levels.
std::optional<TrackingLoop::Filed> TrackingLoop::addAddressToTree(std::string_view storedAddress) {
  const AddressLevels levels = addressLevels(storedAddress);
  SiteTree& tree = parts_.tree;
  addressFound_ = false;
  if (tree.size() > maxSearchedNodes_) {
    parts_.messageBox.show(kTooMuchData, MessageBoxStyle::Critical);
    return std::nullopt;
  }
  addressFound_ = tree.find(storedAddress) != kNoNode;
  if (addressFound_) return Filed::Existing;
  try {
    tree.addMissingLevels(levels, kNoTag);
  } catch (...) {
    // write() detects that the node is missing.
  }
  return Filed::New;
}

void TrackingLoop::tagAncestors(NodeId node, char flag) {
  SiteTree& tree = parts_.tree;
  for (NodeId above = tree.parent(node); above != kNoNode && tree.text(above) != kRootText;
       above = tree.parent(above)) {
    tree.setTag(above, flag);
  }
}

}  // namespace quorrix
