// Asking an X11 window manager to bring a window to the front.
#pragma once

#include <xcb/xcb.h>

namespace quorrix {

// Asks as a task bar does, for a user who wants the window now. A request in the
// program's own name counts as stealing the keyboard focus if the user was last busy
// elsewhere.
void activateX11Window(xcb_connection_t* connection, xcb_window_t window);

}  // namespace quorrix
