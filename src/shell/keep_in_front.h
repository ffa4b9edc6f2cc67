// A window that stays on top of all others, such as the search results, would cover the
// program's dialogs and messages.
#pragma once

class QWidget;

namespace quorrix {

// Makes `window`, which must not be shown yet, stay on top too if another visible window
// does.
void keepInFront(QWidget& window);

}  // namespace quorrix
