// Dialogs centre themselves over the main window when they load.
#pragma once

class QWidget;

namespace quorrix {

// Left and top are the owner's plus half of what the owner is wider and higher,
// halves truncated to whole twips.
void centreOver(QWidget& dialog, const QWidget& owner);

}  // namespace quorrix
