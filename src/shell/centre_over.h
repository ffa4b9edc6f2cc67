// Dialogs centre themselves over the window that opens them when they load.
#pragma once

class QWidget;

namespace quorrix {

// Left and top are the owner's plus half of what the owner is wider and higher, the
// half cut off to whole twips: one is a fifteenth of a pixel, so that rounding the
// half would place no dialog elsewhere.
void centreOver(QWidget& dialog, const QWidget& owner);

}  // namespace quorrix
