#include "platform/linux/unreadable_browsers.h"

#include <algorithm>
#include <set>
#include <string>

namespace quorrix {
namespace {

using Reason = UnreadableBrowser::Reason;

constexpr std::chrono::milliseconds kBetweenLooks{2000};

// Chromium and the browsers based on it check the session's switch only at startup.
Reason reasonOf(const BrowserProcess& process, bool isBusReady) {
  if (!isBusReady) return Reason::NoBus;
  const bool looksOnlyOnce =
      process.kind == BrowserKind::Chromium || process.kind == BrowserKind::GoogleChrome;
  return looksOnlyOnce && !process.vetoesAccessibility ? Reason::StartedTooEarly
                                                       : Reason::AccessibilityOff;
}

// A sandboxed browser has a different process id on the bus than in the list of
// processes. So a program of the same kind whose process is not listed may be this one.
bool mayBeOnBus(const BrowserProcess& process, const std::vector<BrowserProcess>& processes,
                const BrowserWindows& windows) {
  return std::ranges::any_of(windows.programs(), [&](const auto& entry) {
    const BrowserProgram& program = entry.second;
    const bool isListed =
        std::ranges::find(processes, program.processId, &BrowserProcess::id) != processes.end();
    return program.processId == process.id || (program.kind == process.kind && !isListed);
  });
}

}  // namespace

void UnreadableBrowsers::look(const BrowserWindows& windows, bool isBusReady) {
  const auto now = clock_.elapsed();
  if (now >= nextLook_) {
    nextLook_ = now + kBetweenLooks;
    lookAtProcesses(windows, isBusReady);
  }
  std::set<UnreadableBrowser> found(ofProcesses_.begin(), ofProcesses_.end());
  for (const BrowserWindows::Window& window : windows.all()) {
    const bool isOpen = window.kind == WindowKind::Unsettled && !window.name.empty();
    if (!isOpen || now - window.firstSeen < kSettling) continue;
    found.insert({std::string(nameOf(window.browser)), Reason::UnknownKind});
  }
  list_.assign(found.begin(), found.end());
}

void UnreadableBrowsers::forget() {
  nextLook_ = {};
  firstSeen_.clear();
  ofProcesses_.clear();
  list_.clear();
}

void UnreadableBrowsers::lookAtProcesses(const BrowserWindows& windows, bool isBusReady) {
  ofProcesses_.clear();
  const std::vector<BrowserProcess> processes = processes_();
  std::erase_if(firstSeen_, [&](const auto& entry) {
    return std::ranges::find(processes, entry.first, &BrowserProcess::id) == processes.end();
  });
  for (const BrowserProcess& process : processes) {
    const auto seen = firstSeen_.try_emplace(process.id, clock_.elapsed()).first;
    if (isBusReady && mayBeOnBus(process, processes, windows)) {
      seen->second = clock_.elapsed();
    } else if (clock_.elapsed() - seen->second >= kStarting) {
      ofProcesses_.push_back({std::string(nameOf(process.kind)), reasonOf(process, isBusReady)});
    }
  }
}

}  // namespace quorrix
