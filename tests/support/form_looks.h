// What a user would find fault with in a window that is on screen: texts that are cut
// off, controls that overlap, stick out or stand out of order, colours that cannot be read,
// controls that the keyboard does not reach or a screen reader has no name for. Each answer is a
// list of sentences, empty when all is well.
#pragma once

#include <QStringList>

class QWidget;

namespace quorrix::test {

[[nodiscard]] QStringList faultsOfLayout(QWidget& window);

// Texts stand out from what they are on by 4.5 to 1 at least, and the window as it is
// painted is as light or as dark as its palette.
[[nodiscard]] QStringList faultsOfColour(QWidget& window);

// Tab goes from left to right and from top to bottom, and a label stands before its control,
// to the left of it or above it.
[[nodiscard]] QStringList faultsOfArrangement(QWidget& window);

// Tab goes through every control that takes part in it and back to the first, and
// each has an accessible name.
[[nodiscard]] QStringList faultsOfTabOrder(QWidget& window);

}  // namespace quorrix::test
