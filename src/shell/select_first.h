// For lists in which nothing is selected at first.
#pragma once

class QAbstractItemView;
class QKeyEvent;

namespace quorrix {

// While nothing is selected, a key that moves the cursor up, down or to the beginning
// selects the current entry instead, or the first one if there is no current entry.
// Returns whether the key did that.
[[nodiscard]] bool selectByFirstMove(QAbstractItemView& list, const QKeyEvent& key);

}  // namespace quorrix
