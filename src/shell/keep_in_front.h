// A window that stays on top of all others, as the results of a search do, would
// cover what the program has to ask.
#pragma once

class QWidget;

namespace quorrix {

// Has a window that is not shown yet stay on top too, while another one does.
void keepInFront(QWidget& window);

}  // namespace quorrix
