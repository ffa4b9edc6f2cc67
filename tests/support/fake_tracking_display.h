// Records what the tracking loop would show in the main window.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/failure.h"
#include "tracking/tracking_loop.h"

namespace quorrix::test {

class FakeTrackingDisplay final : public TrackingDisplay {
 public:
  // The next makeVisible throws Failure(number).
  void failToMakeVisible(int number) { failure_ = number; }

  // Everything that the status bar's second panel showed, in order.
  [[nodiscard]] const std::vector<std::string>& statuses() const { return statuses_; }
  [[nodiscard]] const std::vector<NodeId>& nodesMadeVisible() const { return visible_; }

  // Every list of unreadable browsers that was shown, in order.
  [[nodiscard]] const std::vector<std::vector<UnreadableBrowser>>& unreadableBrowsers() const {
    return unreadable_;
  }

  void showTrackingStatus(std::string_view text) override { statuses_.emplace_back(text); }

  void makeVisible(NodeId node) override {
    if (failure_) throw Failure(*failure_);
    visible_.push_back(node);
  }

  void showUnreadableBrowsers(const std::vector<UnreadableBrowser>& browsers) override {
    unreadable_.push_back(browsers);
  }

 private:
  std::vector<std::string> statuses_;
  std::vector<NodeId> visible_;
  std::vector<std::vector<UnreadableBrowser>> unreadable_;
  std::optional<int> failure_;
};

}  // namespace quorrix::test
