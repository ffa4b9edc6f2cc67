// Finds visible faults in a window that is on the screen: texts that are cut off;
// controls that overlap, stick out or are out of order; colours that cannot be read;
// controls that the keyboard does not reach or that have no name for a screen reader.
// Each function returns a list of sentences, which is empty if there are no faults.
#pragma once

#include <QStringList>

class QWidget;

namespace quorrix::test {

[[nodiscard]] QStringList faultsOfLayout(QWidget& window);

// Texts must have a contrast of at least 4.5 to 1 with their background, and the window
// as painted must be as light or as dark as its palette.
[[nodiscard]] QStringList faultsOfColour(QWidget& window);

// Tab must go in the direction of the layout and from top to bottom, and a label must be
// before its control or above it.
[[nodiscard]] QStringList faultsOfArrangement(QWidget& window);

// Tab must go through every control that takes part in it and back to the first, and each
// must have an accessible name.
[[nodiscard]] QStringList faultsOfTabOrder(QWidget& window);

}  // namespace quorrix::test
