// For lists in which nothing is selected at first.
#pragma once

class QAbstractItemView;
class QKeyEvent;

namespace quorrix {

// While nothing is selected, a key that moves the cursor up, down or to the beginning
// selects the entry where it stands instead. Whether this was such a key.
[[nodiscard]] bool selectByFirstMove(QAbstractItemView& list, const QKeyEvent& key);

}  // namespace quorrix
