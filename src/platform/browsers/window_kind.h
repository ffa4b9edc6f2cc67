// Decides whether a browser's window is an ordinary one. Recording a private window is
// the worst mistake this program can make, so it reads only windows that are known to be
// ordinary: the accessible name is that of an ordinary window in some language, and
// nothing else about the window says otherwise. Pure logic; the window systems supply the
// findings.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "platform/browsers/browser_kind.h"

namespace quorrix {

enum class WindowKind {
  Unsettled,  // not known yet; to be examined again
  Ordinary,
  Private,  // private, or not known to be ordinary; stays so
  Other,    // not a browser window, such as a dialog
};

struct WindowFindings {
  bool isFrame = false;          // a top-level window, and not a dialog
  std::string name;              // accessible name, UTF-8; empty while the window has none
  bool hasBars = false;          // its tool bars exist, and with them the marks
  bool hasOrdinaryMark = false;  // a part that only ordinary windows have
  bool hasPrivateMark = false;   // a part that only private windows have

  // Firefox only. isMain: it is not a popup. canEndSession: it has the button that ends a
  // private session, which the windows of a Firefox that never remembers history have as
  // well. remembersHistory: whether its settings say that it remembers history; nullopt
  // if they do not say or were not read.
  bool isMain = false;
  bool canEndSession = false;
  std::optional<bool> remembersHistory = std::nullopt;
};

// Whether `name` is the accessible name of an ordinary window of that browser, in any
// language. Always true for GNOME Web, whose names do not show the kind.
[[nodiscard]] bool isOrdinaryName(BrowserKind browser, const std::string& name);

// Whether WindowFindings::remembersHistory would help to judge.
[[nodiscard]] bool wantsHistory(BrowserKind browser, const WindowFindings& findings);

// Judges the windows of all browser processes, and remembers for each process what its
// windows have shown.
class WindowKinds {
 public:
  // A window that opens may not have its final name at once.
  static constexpr std::chrono::milliseconds kNaming{3000};

  // For all browsers but GNOME Web. `age` is how long the window has been known;
  // `process` is any string that identifies its process.
  [[nodiscard]] WindowKind judge(BrowserKind browser, const std::string& process,
                                 const WindowFindings& findings, std::chrono::milliseconds age);

  // To be called when the process is gone.
  void forget(const std::string& process) { remembers_.erase(process); }

 private:
  [[nodiscard]] WindowKind judgeFirefox(const std::string& process, const WindowFindings& findings,
                                        std::chrono::milliseconds age);

  std::map<std::string, bool> remembers_;  // whether a Firefox process remembers history
};

// Nothing in a window of GNOME Web shows whether it is private, but private windows have
// a process of their own. `ordinaryProcess` is the process that owns the browser's name
// on the session bus: 0 if no process owns it, nullopt while that is unknown.
[[nodiscard]] WindowKind judgeGnomeWeb(const WindowFindings& findings, std::uint32_t process,
                                       std::optional<std::uint32_t> ordinaryProcess,
                                       std::chrono::milliseconds age);

}  // namespace quorrix
