#include "platform/linux/accessibility_service.h"

#include <new>
#include <utility>

#include "platform/linux/session_bus.h"

namespace quorrix {
namespace {

constexpr const char* kService = "org.a11y.Bus";
constexpr const char* kObject = "/org/a11y/bus";
constexpr const char* kBusInterface = "org.a11y.Bus";
constexpr const char* kStatusInterface = "org.a11y.Status";
constexpr const char* kSwitchProperty = "IsEnabled";
constexpr std::chrono::milliseconds kRetryInterval{500};

Message serviceCall(const char* interface, const char* member) {
  Message call(dbus_message_new_method_call(kService, kObject, interface, member));
  if (!call) throw std::bad_alloc();
  return call;
}

Message switchCall(const char* member) {
  Message call = serviceCall(DBUS_INTERFACE_PROPERTIES, member);
  const char* interface = kStatusInterface;
  const char* property = kSwitchProperty;
  if (!dbus_message_append_args(call.get(), DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING,
                                &property, DBUS_TYPE_INVALID)) {
    throw std::bad_alloc();
  }
  return call;
}

Message setSwitchCall() {
  Message call = switchCall("Set");
  DBusMessageIter arguments;
  DBusMessageIter variant;
  const dbus_bool_t on = TRUE;
  dbus_message_iter_init_append(call.get(), &arguments);
  if (!dbus_message_iter_open_container(&arguments, DBUS_TYPE_VARIANT, DBUS_TYPE_BOOLEAN_AS_STRING,
                                        &variant) ||
      !dbus_message_iter_append_basic(&variant, DBUS_TYPE_BOOLEAN, &on) ||
      !dbus_message_iter_close_container(&arguments, &variant)) {
    throw std::bad_alloc();
  }
  return call;
}

std::optional<bool> flagIn(const Message& answer) {
  if (!dbus_message_has_signature(answer.get(), "v")) return std::nullopt;
  DBusMessageIter variant;
  DBusMessageIter value;
  dbus_message_iter_init(answer.get(), &variant);
  dbus_message_iter_recurse(&variant, &value);
  if (dbus_message_iter_get_arg_type(&value) != DBUS_TYPE_BOOLEAN) return std::nullopt;
  dbus_bool_t flag = FALSE;
  dbus_message_iter_get_basic(&value, &flag);
  return flag != FALSE;
}

}  // namespace

void AccessibilityService::advance(const Deadline& deadline) {
  while (hasErrand()) {
    connectWhenDue();
    if (!connection_) return;
    sendWhatIsDue();
    connection_->exchange(owesAnswer_ ? std::chrono::milliseconds::zero() : deadline.left());
    if (!connection_->isOpen()) return fail();
    const bool wasReady = connection_->isReady();
    readAnswers();
    if (!connection_) return;
    if (owesAnswer_ || deadline.hasPassed()) {
      owesAnswer_ = !wasReady || addressCall_ || readSwitchCall_ || setSwitchCall_;
      return;
    }
  }
  disconnect();
}

bool AccessibilityService::isDue() const {
  return !lastFailure_ || clock_.elapsed() - *lastFailure_ >= kRetryInterval;
}

void AccessibilityService::connectWhenDue() {
  if (connection_ || !isDue()) return;
  connection_ = BusConnection::open(sessionBusAddress());
  if (!connection_) fail();
}

void AccessibilityService::sendWhatIsDue() {
  if (!connection_->isReady()) return;
  if (addressWanted_ && !addressCall_) {
    addressCall_ = connection_->send(serviceCall(kBusInterface, "GetAddress"));
  }
  if (!switchOnWanted_ || readSwitchCall_ || setSwitchCall_) return;
  if (switchIsOff_) {
    setSwitchCall_ = connection_->send(quorrix::setSwitchCall());
  } else {
    readSwitchCall_ = connection_->send(switchCall("Get"));
  }
}

void AccessibilityService::readAnswers() {
  if (addressCall_ && isCompleted(addressCall_)) readAddress(takeAnswer(addressCall_));
  if (readSwitchCall_ && isCompleted(readSwitchCall_)) readSwitch(takeAnswer(readSwitchCall_));
  if (setSwitchCall_ && isCompleted(setSwitchCall_)) {
    const bool refused = takeAnswer(setSwitchCall_) == nullptr;
    switchIsOff_ = false;
    if (refused) return fail();
    switchedOn_ = true;
    switchOnWanted_ = false;
  }
}

void AccessibilityService::readAddress(const Message& answer) {
  const char* address = nullptr;
  if (!answer || !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_STRING, &address,
                                        DBUS_TYPE_INVALID)) {
    return fail();
  }
  address_ = address;
  addressWanted_ = false;
}

void AccessibilityService::readSwitch(const Message& answer) {
  const std::optional<bool> on = answer ? flagIn(answer) : std::nullopt;
  if (!on) return fail();
  switchIsOff_ = !*on;
  switchedOn_ = *on;
  if (*on) switchOnWanted_ = false;
}

void AccessibilityService::fail() {
  disconnect();
  lastFailure_ = clock_.elapsed();
}

void AccessibilityService::disconnect() {
  addressCall_.reset();
  readSwitchCall_.reset();
  setSwitchCall_.reset();
  connection_.reset();
  owesAnswer_ = false;
  switchIsOff_ = false;
}

std::optional<std::string> AccessibilityService::takeBusAddress() {
  return std::exchange(address_, std::nullopt);
}

}  // namespace quorrix
