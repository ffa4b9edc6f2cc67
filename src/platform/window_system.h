// The interface through which the browser scan sees the desktop's windows. Methods have
// the names and the behaviour of user32 calls, so that the scan reads the same
// everywhere: windows/desktop_window_system.h forwards them to user32 or emulates them on
// top of MSAA, and linux/accessible_window_system.h emulates them on top of the
// accessibility bus. Texts are single-byte (platform/code_page.h).
#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace quorrix {

// Identifies a window until the next enumeration; 0 is "no window".
using WindowHandle = std::uintptr_t;
inline constexpr WindowHandle kNoWindow = 0;

enum class WindowRelation : unsigned {
  NextSibling = 2,  // GW_HWNDNEXT
  FirstChild = 5,   // GW_CHILD
};

enum class WindowMessage : unsigned {
  GetText = 13,        // WM_GETTEXT: fills the buffer, returns the length copied
  GetTextLength = 14,  // WM_GETTEXTLENGTH: the buffer is not used
};

// A browser with an open window whose pages cannot be read, and the reason.
struct UnreadableBrowser {
  enum class Reason {
    StartedTooEarly,   // it checks the accessibility switch only at startup, and
                       // started before the switch was on
    AccessibilityOff,  // an environment variable or a setting of the browser vetoes accessibility
    NoBus,             // there is no accessibility bus, or it does not answer
    UnknownKind,       // whether the window is private is still not known after 10 s
  };

  std::string name;  // UTF-8, not empty: "Chromium"
  Reason reason;

  auto operator<=>(const UnreadableBrowser&) const = default;
};

class WindowSystem {
 public:
  virtual ~WindowSystem() = default;

  // Called once each time tracking starts. An implementation switches on whatever makes
  // browsers readable.
  virtual void prepareForTracking() {}

  // How long to wait after a pass before the next one. With the usual wait, an idle
  // tracking loop costs almost nothing, and a page is still recorded well within a
  // second.
  static constexpr std::chrono::milliseconds kUsualWait{100};
  [[nodiscard]] virtual std::chrono::milliseconds timeToNextPass() const { return kUsualWait; }

  // Calls `callback` for each top-level window, most recently used first, until it
  // returns false.
  virtual void EnumWindows(const std::function<bool(WindowHandle)>& callback) = 0;

  // Both copy at most buffer.size() - 1 characters and a NUL, and return the
  // number of characters before the NUL; 0 for a window that is gone.
  virtual std::size_t GetWindowTextA(WindowHandle window, std::span<char> buffer) = 0;
  virtual std::size_t GetClassNameA(WindowHandle window, std::span<char> buffer) = 0;

  // kNoWindow when there is none.
  [[nodiscard]] virtual WindowHandle GetParent(WindowHandle window) = 0;
  [[nodiscard]] virtual WindowHandle GetWindow(WindowHandle window, WindowRelation relation) = 0;

  // Lengths count characters without the NUL; GetText copies like GetWindowTextA. The
  // result is 0 for a window that does not answer in time.
  virtual std::size_t SendMessageA(WindowHandle window, WindowMessage message,
                                   std::span<char> buffer) = 0;

  // As of the last enumeration. The order stays the same while nothing changes. Empty if
  // the platform cannot tell.
  [[nodiscard]] virtual std::vector<UnreadableBrowser> unreadableBrowsers() const { return {}; }
};

}  // namespace quorrix
