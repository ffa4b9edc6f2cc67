// The desktop's windows as the browser scan asks for them. Methods carry the
// names of the user32 calls whose behaviour they promise, so that the scan reads
// the same everywhere: windows/user32_window_system.h passes them on, while
// linux/accessible_window_system.h plays a window system in front of the
// accessibility bus. Texts are single-byte (Windows-1252).
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

// Identifies a window for the length of one enumeration; 0 is "no window".
using WindowHandle = std::uintptr_t;
inline constexpr WindowHandle kNoWindow = 0;

enum class WindowRelation : unsigned {
  NextSibling = 2,  // GW_HWNDNEXT
  FirstChild = 5,   // GW_CHILD
};

enum class WindowMessage : unsigned {
  GetText = 13,        // WM_GETTEXT: fills the buffer, answers the length copied
  GetTextLength = 14,  // WM_GETTEXTLENGTH: the buffer is not used
};

// A browser with a window open whose pages cannot be read, and what keeps them from it.
struct UnreadableBrowser {
  enum class Reason {
    StartedTooEarly,   // it looks at the accessibility switch only when it starts, and
                       // started before that was on
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

  // Called once whenever tracking starts: the place to switch on whatever makes
  // browsers readable.
  virtual void prepareForTracking() {}

  // How long to wait after a pass before the next one. The usual time lets an idle
  // tracking loop cost next to nothing, and yet files a page well within a second.
  static constexpr std::chrono::milliseconds kUsualWait{100};
  [[nodiscard]] virtual std::chrono::milliseconds timeToNextPass() const { return kUsualWait; }

  // Calls `callback` for each top-level window, the one used last first, until
  // it returns false.
  virtual void EnumWindows(const std::function<bool(WindowHandle)>& callback) = 0;

  // Both copy at most buffer.size() - 1 characters and a NUL, and return the
  // number of characters before the NUL; 0 for a window that is gone.
  virtual std::size_t GetWindowTextA(WindowHandle window, std::span<char> buffer) = 0;
  virtual std::size_t GetClassNameA(WindowHandle window, std::span<char> buffer) = 0;

  // kNoWindow when there is none.
  [[nodiscard]] virtual WindowHandle GetParent(WindowHandle window) = 0;
  [[nodiscard]] virtual WindowHandle GetWindow(WindowHandle window, WindowRelation relation) = 0;

  // Lengths count characters without the NUL; GetText copies like GetWindowTextA.
  // A window that does not answer in time answers 0.
  virtual std::size_t SendMessageA(WindowHandle window, WindowMessage message,
                                   std::span<char> buffer) = 0;

  // As of the last enumeration, in the same order while nothing changes; empty where
  // the platform cannot tell.
  [[nodiscard]] virtual std::vector<UnreadableBrowser> unreadableBrowsers() const { return {}; }
};

}  // namespace quorrix
