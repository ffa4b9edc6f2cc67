#include "shell/guarded.h"

#include "platform/failure.h"
#include "shell/pointer.h"

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
  // Only now, with everything that the operation opened closed again.
  showDefaultPointer(form);
  messageBox.show(failureMessage(family, number), MessageBoxStyle::Critical);
  return false;
}

}  // namespace quorrix
