// The windows of today's browsers among the top-level windows of the desktop.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/browsers/browser_kind.h"

namespace quorrix {

// Whether the window has the class of Firefox's or Chromium's windows. Every program that
// is built from their parts has it, too. The scan does not see such windows themselves.
[[nodiscard]] bool isLikeTodaysBrowsers(HWND window);

struct BrowserWindow {
  HWND handle = nullptr;
  DWORD process = 0;
  // By its text, which may be that of a private window; nullopt if it names no browser.
  std::optional<BrowserKind> browser;
};

class BrowserWindowList {
 public:
  // The windows of the programs of known browsers that the user can see, topmost first: not
  // hidden, minimised or cloaked, and not owned by another window.
  [[nodiscard]] std::vector<BrowserWindow> visible();

  // How many processes of Firefox had windows then, in whatever state.
  [[nodiscard]] std::size_t firefoxProcesses() const;

 private:
  // Finding the program of a process takes long, so it is remembered while the process has
  // windows.
  std::map<DWORD, std::wstring> programs_;
};

}  // namespace quorrix
