// What every user's operation is wrapped in: failures are reported, never
// propagated.
#pragma once

#include <functional>

#include "platform/message_box.h"
#include "shell/failure_messages.h"

class QWidget;

namespace quorrix {

// Runs `operation`. When anything in it fails, the form's mouse pointer goes
// back to the default, the family's sentence for the failure is shown in one
// message box, and the answer is false. Nothing is rolled back.
bool guarded(QWidget& form, MessageBox& messageBox, FailureFamily family,
             const std::function<void()>& operation);

// Runs the work of a slot so that no exception leaves it.
using SlotRunner = std::function<void(const std::function<void()>& work)>;

}  // namespace quorrix
