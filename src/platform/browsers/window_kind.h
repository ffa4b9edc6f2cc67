// Whether a browser's window is an ordinary one. A private window recorded is the
// worst that this program can do, so only a window that is known to be ordinary is
// read: its accessible name is that of an ordinary window in some language, and nothing
// else about it says otherwise. Pure logic; what was found out about a window comes
// from the window systems.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "platform/browsers/browser_kind.h"

namespace quorrix {

enum class WindowKind {
  Unsettled,  // not known yet: to be looked at again
  Ordinary,
  Private,  // private, or not known to be ordinary; stays so
  Other,    // no browser window at all, such as a dialog
};

struct WindowFindings {
  bool isFrame = false;          // a top-level window, and not a dialog
  std::string name;              // accessible name, UTF-8; empty while the window has none
  bool hasBars = false;          // its tool bars are there, and with them the marks
  bool hasOrdinaryMark = false;  // a part that only ordinary windows have
  bool hasPrivateMark = false;   // a part that only private windows have

  // Firefox: it is not a popup; it has the button that ends a private session, which the
  // windows of a Firefox that never remembers history have as well; and whether its
  // settings say that it remembers history, nullopt when they do not say or were not read.
  bool isMain = false;
  bool canEndSession = false;
  std::optional<bool> remembersHistory = std::nullopt;
};

// Whether `name` is the accessible name of an ordinary window of that browser, in any
// language. Always true for GNOME Web, whose names do not tell.
[[nodiscard]] bool isOrdinaryName(BrowserKind browser, const std::string& name);

// Whether WindowFindings::remembersHistory would help to judge.
[[nodiscard]] bool wantsHistory(BrowserKind browser, const WindowFindings& findings);

// Judges the windows of all browser processes; remembers of each process what its
// windows have shown.
class WindowKinds {
 public:
  // A window that opens may not have its final name at once.
  static constexpr std::chrono::milliseconds kNaming{3000};

  // For all but GNOME Web. `age` is how long the window has been known; `process` is any
  // name of its process.
  [[nodiscard]] WindowKind judge(BrowserKind browser, const std::string& process,
                                 const WindowFindings& findings, std::chrono::milliseconds age);

  // The process is gone.
  void forget(const std::string& process) { remembers_.erase(process); }

 private:
  [[nodiscard]] WindowKind judgeFirefox(const std::string& process, const WindowFindings& findings,
                                        std::chrono::milliseconds age);

  std::map<std::string, bool> remembers_;  // whether a Firefox process does, once known
};

// A window of GNOME Web shows by nothing whether it is private, but private windows
// have a process of their own. `ordinaryProcess` is the one that owns the browser's
// name on the session bus: 0 for none, nullopt while that is not known.
[[nodiscard]] WindowKind judgeGnomeWeb(const WindowFindings& findings, std::uint32_t process,
                                       std::optional<std::uint32_t> ordinaryProcess,
                                       std::chrono::milliseconds age);

}  // namespace quorrix
