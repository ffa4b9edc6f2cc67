#include "shell/guarded.h"

#include <QWidget>

#include "platform/failure.h"

namespace quorrix {

bool guarded(QWidget& form, MessageBox& messageBox, FailureFamily family,
             const std::function<void()>& operation) {
  int number = 0;
  try {
    operation();
    return true;
  } catch (...) {
    number = currentFailureNumber();
  }
  // Only now, with everything that the operation opened closed again. The caller's own
  // hourglass, under which the operation ran, ends here as well.
  form.unsetCursor();
  messageBox.show(failureMessage(family, number), MessageBoxStyle::Critical);
  return false;
}

}  // namespace quorrix
