// Brings up a window that the user asks for again.
#pragma once

#include <string>

class QWidget;

namespace quorrix {

// Shows the window, restores it if it is minimised, and raises it above others.
void bringUp(QWidget& window);

// For a user who starts the program a second time: also brings up the dialog that waits
// for an answer, if there is one. Returns whichever of the two should get the keyboard
// focus. A window that is not shown yet stays hidden, and the result is null. Wayland
// gives a window the keyboard focus only for an activation token; the token may be empty.
QWidget* bringUpProgram(QWidget& window, const std::string& activationToken);

}  // namespace quorrix
