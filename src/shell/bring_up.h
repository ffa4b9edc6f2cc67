// A window that the user asks for once more.
#pragma once

#include <string>

class QWidget;

namespace quorrix {

// Shows it; one that was minimised or lies below others comes up.
void bringUp(QWidget& window);

// For a user who has started the program once more: also brings up the dialog that waits
// for an answer, if there is one. Returns the one of the two that is to have the keyboard;
// null for a window that is not shown yet, which stays hidden. Wayland gives the keyboard
// to a window only for an activation token; it may be empty.
QWidget* bringUpProgram(QWidget& window, const std::string& activationToken);

}  // namespace quorrix
