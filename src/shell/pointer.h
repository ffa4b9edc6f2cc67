// The mouse pointer of a form while it works, and after.
#pragma once

#include <QWidget>

namespace quorrix {

inline void showHourglass(QWidget& form) { form.setCursor(Qt::WaitCursor); }

inline void showDefaultPointer(QWidget& form) { form.unsetCursor(); }

}  // namespace quorrix
