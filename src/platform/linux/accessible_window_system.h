// Emulates a window system on top of the accessibility bus: it plays a classic window
// (browsers/played_windows.h) in front of each ordinary window of the known browsers.
// Private windows, windows of unknown kind and the windows of all other programs have no
// window here.
//
// One enumeration is one pass. It asks its questions when it begins, and of the pages it
// reads only that of the first window. A pass waits at most kPassLimit, whatever state
// the browsers and the bus are in. Answers that arrive later are used in a later pass.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/browsers/browser_presentation.h"
#include "platform/browsers/played_windows.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/linux/accessibility_bus.h"
#include "platform/linux/browser_windows.h"
#include "platform/linux/page_reader.h"
#include "platform/linux/unreadable_browsers.h"
#include "platform/window_system.h"

namespace quorrix {

class AccessibleWindowSystem final : public WindowSystem {
 public:
  static constexpr std::chrono::milliseconds kPassLimit{20};

  // A reading that took longer than this is out of date and is started again.
  static constexpr std::chrono::milliseconds kLongestReading{30'000};

  // The cost of the last pass.
  struct PassStatistics {
    std::uint64_t calls = 0;
    std::chrono::microseconds duration{};
  };

  // Information about the desktop that does not come from the accessibility bus.
  struct Desktop {
    WindowStack stack;
    std::function<std::vector<BrowserProcess>()> browserProcesses;
  };

  // The clock and the page must outlive this.
  AccessibleWindowSystem(Clock& clock, const CodePage& codePage, Desktop desktop);

  // Makes the session's programs accessible; retries in the following passes until that
  // succeeds.
  void prepareForTracking() override;

  // Shorter than usual after a pass that still lacks answers, for two seconds at most,
  // but never so short that passes take more than a fifth of the time.
  [[nodiscard]] std::chrono::milliseconds timeToNextPass() const override;

  void EnumWindows(const std::function<bool(WindowHandle)>& callback) override;
  std::size_t GetWindowTextA(WindowHandle window, std::span<char> buffer) override;
  std::size_t GetClassNameA(WindowHandle window, std::span<char> buffer) override;
  [[nodiscard]] WindowHandle GetParent(WindowHandle window) override;
  [[nodiscard]] WindowHandle GetWindow(WindowHandle window, WindowRelation relation) override;
  std::size_t SendMessageA(WindowHandle window, WindowMessage message,
                           std::span<char> buffer) override;

  [[nodiscard]] std::vector<UnreadableBrowser> unreadableBrowsers() const override {
    return unreadable_.list();
  }

  [[nodiscard]] const PassStatistics& passStatistics() const { return statistics_; }

 private:
  void beginPass();
  void ask(const Deadline& deadline);
  [[nodiscard]] bool advance();
  void readFront();
  void showWindows();

  Clock& clock_;
  AccessibilityBus bus_;
  BrowserWindows list_;
  std::map<AccessibleId, std::unique_ptr<PageReader>> readers_;  // by frame
  BrowserPresentation presentation_;
  UnreadableBrowsers unreadable_;

  AccessibleId front_;  // the window whose page is being read
  bool isReading_ = false;
  std::chrono::milliseconds readingSince_{};
  std::optional<WindowReading> reading_;  // of this pass

  PlayedWindows windows_;
  bool isThrough_ = true;
  std::chrono::milliseconds lastThrough_{};
  unsigned connectionNumber_ = 0;
  PassStatistics statistics_;
};

}  // namespace quorrix
