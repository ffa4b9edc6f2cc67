// Tracking: each pass reads the address that the browser is visiting. When it sees a
// visit, it records the address in the tree and in the site file. There is no timer and
// no second thread: the loop processes pending window events after every pass, so menus
// and dialogs work while it runs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <set>
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

// What the loop displays. The main window implements this.
class TrackingDisplay {
 public:
  virtual ~TrackingDisplay() = default;

  // Shows `text` in the status bar's second panel.
  virtual void showTrackingStatus(std::string_view text) = 0;

  // Expands the node's ancestors and scrolls to it.
  virtual void makeVisible(NodeId node) = 0;

  // Called when the list has changed. The list becomes empty when tracking ends.
  virtual void showUnreadableBrowsers(const std::vector<UnreadableBrowser>& browsers) = 0;
};

// In a tree of more nodes than this, no visit is recorded, and a message asks the user to
// archive the display.
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

  // Sets isTracking() and runs the loop until it ends. If it is called again by an event
  // that the loop processes, it runs a second loop inside the first, and one stop ends
  // both. Throws Failure if a pass or the last write fails; the caller then reports it
  // and calls stopAfterFailure().
  void startTracking();

  // The running loops end when they next test isTracking().
  void stopTracking();
  void stopAfterFailure();

  // Stops without showing anything, because the main window is closing.
  void abandon() {
    isTracking_ = false;
    isAbandoned_ = true;
  }

  [[nodiscard]] bool isTracking() const { return isTracking_; }

  // Whether the address of the last visit was already in the tree.
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
  void giveVisitsUp();
  void write(const Visit& visit);
  void showUnreadable(std::vector<UnreadableBrowser> browsers);
  [[nodiscard]] std::optional<Filed> addAddressToTree(std::string_view storedAddress);
  [[nodiscard]] std::uint64_t writeRecord(const Visit& visit, NodeId node);
  void tagAncestors(NodeId node, char flag);

  Parts parts_;
  std::size_t maxSearchedNodes_;
  BrowserReading reading_;
  std::vector<UnreadableBrowser> unreadable_;  // as last shown
  std::deque<Visit> visits_;                   // whose records are not written yet
  std::set<std::string> unwritten_;            // addresses in the tree whose record failed
  unsigned passesUntilWriting_ = 0;
  bool isAbandoned_ = false;
  bool isTracking_ = false;
  bool addressFound_ = false;
};

}  // namespace quorrix
