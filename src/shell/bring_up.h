// A window that the user asks for once more.
#pragma once

class QWidget;

namespace quorrix {

// Shows it; one that was minimised or lies below others comes up.
void bringUp(QWidget& window);

}  // namespace quorrix
