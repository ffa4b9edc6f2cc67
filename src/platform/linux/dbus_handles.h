// Owners for the reference-counted objects of libdbus. Where an answer is read, a null
// message means "no answer".
#pragma once

#include <dbus/dbus.h>

#include <memory>
#include <utility>

namespace quorrix {

struct MessageRelease {
  void operator()(DBusMessage* message) const noexcept { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, MessageRelease>;

// Releasing a call also cancels it in libdbus, so that its answer is dropped.
struct PendingCallRelease {
  void operator()(DBusPendingCall* call) const noexcept {
    dbus_pending_call_cancel(call);
    dbus_pending_call_unref(call);
  }
};
using PendingCall = std::unique_ptr<DBusPendingCall, PendingCallRelease>;

// Whether the answer has arrived. A call that could not be sent never gets one and counts
// as completed.
[[nodiscard]] inline bool isCompleted(const PendingCall& call) {
  return !call || dbus_pending_call_get_completed(call.get()) != 0;
}

// Takes the answer of a completed call and releases the call. Null for an error and for a
// call that could not be sent.
[[nodiscard]] inline Message takeAnswer(PendingCall& call) {
  if (!call) return nullptr;
  Message answer(dbus_pending_call_steal_reply(call.get()));
  call.reset();
  const bool isReturn =
      answer && dbus_message_get_type(answer.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN;
  return isReturn ? std::move(answer) : nullptr;
}

class ErrorHolder {
 public:
  ErrorHolder() { dbus_error_init(&error_); }
  ~ErrorHolder() { dbus_error_free(&error_); }
  ErrorHolder(const ErrorHolder&) = delete;
  ErrorHolder& operator=(const ErrorHolder&) = delete;

  [[nodiscard]] DBusError* get() noexcept { return &error_; }

 private:
  DBusError error_;
};

}  // namespace quorrix
