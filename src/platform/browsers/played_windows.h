// Plays classic windows in front of today's browsers, so that the browser scan finds what
// it looks for:
//
//   browser frame                  text: the window's name and " - Netscape"
//     ComboBox                     text: the address
//       Edit                       text: the address
//     msctls_statusbar32           text: "Connect: host" on the one pass in which a
//                                  visit is seen, else "Done"
//
// The methods with the names of user32 calls do what platform/window_system.h says, for
// the handles of the current pass. Pure logic; a window system feeds it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/browsers/browser_presentation.h"
#include "platform/code_page.h"
#include "platform/window_system.h"

namespace quorrix {

class PlayedWindows {
 public:
  // `codePage` must outlive this.
  explicit PlayedWindows(const CodePage& codePage) : codePage_(codePage) {}

  // Forgets all windows. Their handles are not used again.
  void beginPass();

  // Adds a window after the others. `name` is UTF-8. Windows beyond 65,535 are left out.
  void add(std::string_view name);

  // Shows the page in the first window, of which there must be one.
  void showInFront(const Presented& page);

  // Whether it is a handle of a played window, of whatever pass, and not one of user32.
  [[nodiscard]] static bool owns(WindowHandle handle) { return (handle & kPlayed) != 0; }

  [[nodiscard]] std::size_t count() const { return windows_.size(); }
  [[nodiscard]] WindowHandle frame(std::size_t index) const { return handleOf(index, Part::Frame); }

  std::size_t GetWindowTextA(WindowHandle handle, std::span<char> buffer) const;
  std::size_t GetClassNameA(WindowHandle handle, std::span<char> buffer) const;
  [[nodiscard]] WindowHandle GetParent(WindowHandle handle) const;
  [[nodiscard]] WindowHandle GetWindow(WindowHandle handle, WindowRelation relation) const;
  std::size_t SendMessageA(WindowHandle handle, WindowMessage message,
                           std::span<char> buffer) const;

 private:
  // The highest bit, which no handle of user32 has.
  static constexpr WindowHandle kPlayed = ~(~WindowHandle{0} >> 1U);

  enum class Part : WindowHandle { Frame, ComboBox, Edit, StatusBar };
  struct Window {
    std::string title;  // in the code page, like all texts here
    std::string address;
    std::string status;
  };
  struct Target {
    const Window* window = nullptr;  // null for a handle of another pass
    std::size_t index = 0;
    Part part = Part::Frame;
  };

  [[nodiscard]] WindowHandle handleOf(std::size_t index, Part part) const;
  [[nodiscard]] Target targetOf(WindowHandle handle) const;
  [[nodiscard]] static const std::string& textOf(const Target& target);

  const CodePage& codePage_;
  std::vector<Window> windows_;
  WindowHandle pass_ = 0;
};

}  // namespace quorrix
