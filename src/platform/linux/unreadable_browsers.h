// Finds the browsers from which nothing can be recorded, so that the user can be told:
// those that are running but not on the accessibility bus, and those with a window that
// is not known to be ordinary or private.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <vector>

#include "platform/clock.h"
#include "platform/linux/browser_processes.h"
#include "platform/linux/browser_windows.h"
#include "platform/window_system.h"

namespace quorrix {

class UnreadableBrowsers {
 public:
  // How long a browser may take to become readable after it was first seen, and how
  // long a window may stay unsettled.
  static constexpr std::chrono::milliseconds kStarting{6000};
  static constexpr std::chrono::milliseconds kSettling{10'000};

  UnreadableBrowsers(Clock& clock, std::function<std::vector<BrowserProcess>()> processes)
      : clock_(clock), processes_(std::move(processes)) {}

  // To be called once per pass; reads the list of processes every two seconds at most.
  void look(const BrowserWindows& windows, bool isBusReady);

  // Each browser and reason once, sorted by name and then by reason.
  [[nodiscard]] const std::vector<UnreadableBrowser>& list() const { return list_; }

  // To be called when tracking starts again: every browser gets its full time again.
  void forget();

 private:
  void lookAtProcesses(const BrowserWindows& windows, bool isBusReady);

  Clock& clock_;
  std::function<std::vector<BrowserProcess>()> processes_;
  std::chrono::milliseconds nextLook_{};
  std::map<std::uint32_t, std::chrono::milliseconds> firstSeen_;  // by process id
  std::vector<UnreadableBrowser> ofProcesses_;
  std::vector<UnreadableBrowser> list_;
};

}  // namespace quorrix
