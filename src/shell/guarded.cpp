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
  // The message is shown only now, after everything that the operation opened is closed.
  // This also ends the caller's own hourglass, under which the operation ran.
  form.unsetCursor();
  messageBox.show(failureMessage(family, number), MessageBoxStyle::Critical);
  return false;
}

}  // namespace quorrix
