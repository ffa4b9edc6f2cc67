// Plays a window system in front of the accessibility bus, so that the browser scan
// finds in today's browsers what it looks for:
//
//   browser frame                  text: the frame's name
//     ComboBox                     text: the address
//       Edit                       text: the address
//     msctls_statusbar32           text: "Connect: host" on the one pass in which a
//                                  visit is seen, else "Done"
//
// One enumeration is one pass. Nothing is asked about a window but what the scan
// wants to know, and only when it wants to know it: the title with GetWindowTextA,
// the page with the first GetWindow of a child. All questions of a pass together
// wait no longer than kPassLimit, whatever state browsers and bus are in.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/linux/accessibility_bus.h"
#include "platform/linux/browser_presentation.h"
#include "platform/linux/page_reader.h"
#include "platform/linux/window_list.h"
#include "platform/window_system.h"

namespace quorrix {

class AccessibleWindowSystem final : public WindowSystem {
 public:
  static constexpr std::chrono::milliseconds kPassLimit{200};

  // What the pass has cost so far.
  struct PassStatistics {
    std::uint64_t calls = 0;
    std::chrono::microseconds duration{};
  };

  // `clock` spaces the attempts to reach a bus that is away.
  AccessibleWindowSystem(Clock& clock, WindowList::Desktop desktop);

  // Makes the session's programs accessible; goes on trying in the passes that
  // follow until that has succeeded.
  void prepareForTracking() override;

  void EnumWindows(const std::function<bool(WindowHandle)>& callback) override;
  std::size_t GetWindowTextA(WindowHandle window, std::span<char> buffer) override;
  std::size_t GetClassNameA(WindowHandle window, std::span<char> buffer) override;
  [[nodiscard]] WindowHandle GetParent(WindowHandle window) override;
  [[nodiscard]] WindowHandle GetWindow(WindowHandle window, WindowRelation relation) override;
  std::size_t SendMessageA(WindowHandle window, WindowMessage message,
                           std::span<char> buffer) override;

  [[nodiscard]] const PassStatistics& passStatistics() const { return statistics_; }

 private:
  enum class Part : WindowHandle { Frame, ComboBox, Edit, StatusBar };
  struct Window {
    AccessibleId frame;
    bool isRead = false;
    std::string address;  // Windows-1252, as the status text is
    std::string status;
  };
  struct Target {
    Window* window = nullptr;  // null for a handle of another pass
    std::size_t index = 0;
    Part part = Part::Frame;
  };
  class Stint;

  void beginPass();
  void readPage(Window& window);
  [[nodiscard]] WindowHandle handleOf(std::size_t index, Part part) const;
  [[nodiscard]] Target targetOf(WindowHandle handle);
  [[nodiscard]] std::string textOf(const Target& target);

  AccessibilityBus bus_;
  WindowList list_;
  PageReader reader_;
  BrowserPresentation presentation_;
  std::vector<Window> windows_;  // of this pass
  WindowHandle pass_ = 0;
  unsigned connectionNumber_ = 0;
  PassStatistics statistics_;
};

}  // namespace quorrix
