// The windows of today's browsers among the top-level windows of the desktop.
#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "platform/browsers/browser_kind.h"

namespace quorrix {

// Whether the window has the class of Firefox's or Chromium's windows. Every program that
// is built from their parts has it, too. The scan does not see such windows themselves.
[[nodiscard]] bool isLikeTodaysBrowsers(HWND window);

struct BrowserWindow {
  HWND handle = nullptr;
  DWORD process = 0;
  BrowserKind browser{};
};

// The browsers' windows that the user can see, topmost first: not hidden, minimised or
// cloaked, not owned by another window, of the program of a known browser, and with a text
// that names that browser. The text may be that of a private window.
[[nodiscard]] std::vector<BrowserWindow> visibleBrowserWindows();

}  // namespace quorrix
