// Asking an X11 window manager to bring a window to the front.
#pragma once

#include <xcb/xcb.h>

namespace quorrix {

// As a task bar asks, for a user who wants the window now. What a program asks for itself
// counts as stealing the keyboard when the user was last busy elsewhere.
void activateX11Window(xcb_connection_t* connection, xcb_window_t window);

}  // namespace quorrix
