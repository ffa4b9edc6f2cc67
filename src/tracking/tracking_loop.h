// Tracking: pass after pass, the address that the browser is visiting is read
// and, when a visit is seen, filed in the tree and in the site file. There is
// no timer and no second thread: the loop lets pending window events run after
// every pass, so menus and dialogs work from inside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_pump.h"
#include "platform/message_box.h"
#include "platform/window_system.h"
#include "sitetree/site_file.h"
#include "sitetree/site_tree.h"
#include "tracking/browser_scan.h"

namespace quorrix {

// What the loop shows of itself; the main window does it.
class TrackingDisplay {
 public:
  virtual ~TrackingDisplay() = default;

  // The status bar's second panel.
  virtual void showTrackingStatus(std::string_view text) = 0;

  // Expands the node's ancestors and scrolls to it.
  virtual void makeVisible(NodeId node) = 0;

  // Called when the list has changed; with an empty one when tracking ends.
  virtual void showUnreadableBrowsers(const std::vector<UnreadableBrowser>& browsers) = 0;
};

// The recursive search for a node runs out of stack in a tree of more nodes than this.
inline constexpr std::size_t kMaxSearchedNodes = 4'000'000;

class TrackingLoop {
 public:
  struct Parts {
    WindowSystem& windows;
    SiteTree& tree;
    SiteFile& siteFile;
    EventPump& events;
    MessageBox& messageBox;
    TrackingDisplay& display;
  };

  explicit TrackingLoop(const Parts& parts, std::size_t maxSearchedNodes = kMaxSearchedNodes)
      : parts_(parts), maxSearchedNodes_(maxSearchedNodes) {}

  // Sets isTracking and runs the loop; returns when it ends. Started again from
  // its own pending events it runs a second loop inside the first, and one stop
  // ends both. Throws Failure when a pass fails; then the caller reports it and
  // calls stopAfterFailure.
  void startTracking();

  // The running loops end at their next test.
  void stopTracking();
  void stopAfterFailure();

  // Stops without a word: the main window is going.
  void abandon() {
    isTracking_ = false;
    isAbandoned_ = true;
  }

  [[nodiscard]] bool isTracking() const { return isTracking_; }

  // Whether the last search for a node found it: true after a visit to an
  // address that was in the tree.
  [[nodiscard]] bool addressFound() const { return addressFound_; }

 private:
  void trackWebsites();
  void scanUntilStopped();
  enum class Filed { New, Existing };  // whether the address was in the tree already
  struct Visit {
    std::string address;
    char protocolFlag;
    Filed filed;
  };

  void recordVisit();
  void writeVisits();
  void writeVisitsAgain();
  void writeVisitsBeforeFailure();
  void writeLastVisits();
  void write(const Visit& visit);
  void showUnreadable(std::vector<UnreadableBrowser> browsers);
  [[nodiscard]] std::optional<Filed> addAddressToTree(std::string_view storedAddress);
  [[nodiscard]] std::uint64_t writeRecord(const Visit& visit, NodeId node);
  void tagAncestors(NodeId node, char flag);

  Parts parts_;
  std::size_t maxSearchedNodes_;
  BrowserReading reading_;
  std::vector<UnreadableBrowser> unreadable_;  // as shown
  std::deque<Visit> visits_;                   // whose records are not written yet
  unsigned passesUntilWriting_ = 0;
  bool isAbandoned_ = false;
  bool isTracking_ = false;
  bool addressFound_ = false;
};

}  // namespace quorrix
