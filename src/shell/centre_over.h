// Centres a dialog, when it loads, over the window that opens it.
#pragma once

class QWidget;

namespace quorrix {

// The dialog's left and top are the owner's plus half the difference of the widths and
// heights. The half is truncated to whole twips. A twip is a fifteenth of a pixel, so
// rounding instead would not move any dialog.
void centreOver(QWidget& dialog, const QWidget& owner);

}  // namespace quorrix
