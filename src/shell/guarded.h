// Wraps every user operation: failures are reported, never propagated.
#pragma once

#include <functional>

#include "platform/message_box.h"
#include "shell/failure_messages.h"

class QWidget;

namespace quorrix {

// Runs `operation`. If anything in it fails, resets the form's mouse pointer to the
// default, shows the family's sentence for the failure in one message box, and returns
// false. Nothing is rolled back.
bool guarded(QWidget& form, MessageBox& messageBox, FailureFamily family,
             const std::function<void()>& operation);

// Runs the work of a slot so that no exception leaves it.
using SlotRunner = std::function<void(const std::function<void()>& work)>;

}  // namespace quorrix
