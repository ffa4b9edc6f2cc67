// Finds the browser window among the desktop's windows and reads two things
// from it: the address in its address box, and whether its status bar says that
// it is contacting or loading a site.
#pragma once

#include <string>
#include <string_view>

#include "platform/window_system.h"

namespace quorrix {

struct BrowserReading {
  std::string webAddress;         // empty if no browser window shows one
  bool haveValidAddress = false;  // set by the scan, cleared by the tracking loop
};

// Whether a window with this title belongs to a browser: the title begins or ends with
// "Netscape". The window system that reads today's browsers reports them under such
// titles.
[[nodiscard]] bool isBrowserTitle(std::string_view title);

// Clears webAddress, then reads the first browser window of the enumeration.
void scanBrowserWindows(WindowSystem& windows, BrowserReading& reading);

// Handles one window of the enumeration. Returns false to end it.
[[nodiscard]] bool browserWindowCallback(WindowSystem& windows, WindowHandle window,
                                         BrowserReading& reading);

// Returns the text of the address box at or below `window`, or an empty text. Also sets
// haveValidAddress if a status bar below `window` shows a visit.
[[nodiscard]] std::string searchBrowserChildren(WindowSystem& windows, WindowHandle window,
                                                BrowserReading& reading);

// The whole text of a window, through WM_GETTEXTLENGTH and WM_GETTEXT.
[[nodiscard]] std::string readWindowText(WindowSystem& windows, WindowHandle window);

}  // namespace quorrix
