// Finds the browser window among the desktop's windows and reads two things
// from it: the address in its address box, and whether its status bar says that
// it is contacting or loading a site.
#pragma once

#include <string>
#include <string_view>

#include "platform/window_system.h"

namespace quorrix {

struct BrowserReading {
  std::string webAddress;         // empty when no browser window shows one
  bool haveValidAddress = false;  // set by the scan, cleared by the tracking loop
};

// Whether a window with this title is a browser's: the title begins or ends with
// "Netscape". Today's browsers are shown to the scan under such titles by the window
// system that reads them.
[[nodiscard]] bool isBrowserTitle(std::string_view title);

// Empties webAddress, then reads the first browser window of the enumeration.
void scanBrowserWindows(WindowSystem& windows, BrowserReading& reading);

// One step of the enumeration; false ends it.
[[nodiscard]] bool browserWindowCallback(WindowSystem& windows, WindowHandle window,
                                         BrowserReading& reading);

// The address box's text at or below `window`, or empty; sets haveValidAddress
// on the way when a status bar shows a visit.
[[nodiscard]] std::string searchBrowserChildren(WindowSystem& windows, WindowHandle window,
                                                BrowserReading& reading);

// The whole text of a window, through WM_GETTEXTLENGTH and WM_GETTEXT.
[[nodiscard]] std::string readWindowText(WindowSystem& windows, WindowHandle window);

}  // namespace quorrix
