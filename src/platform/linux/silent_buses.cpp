#include "platform/linux/silent_buses.h"

#include <cstdlib>
#include <memory>
#include <new>
#include <thread>

#include "platform/deadline.h"
#include "platform/linux/bus_connection.h"
#include "platform/linux/session_bus.h"

namespace quorrix {
namespace {

constexpr const char* kSessionVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kAccessibilityVariable = "AT_SPI_BUS_ADDRESS";
// libdbus knows no such transport and fails at once. Without any address it would start a
// bus of its own.
constexpr const char* kNoBus = "disabled:";
constexpr std::chrono::milliseconds kBetweenKnocks{10};

struct ProbedBus {
  std::unique_ptr<BusConnection> connection;  // null if no bus accepts one
  bool isSilent = false;
};

ProbedBus probe(const std::string& addresses, const Deadline& deadline) {
  ProbedBus bus{.connection = BusConnection::open(addresses)};
  while (!bus.connection && BusConnection::isQueueFull(addresses)) {
    bus.isSilent = deadline.hasPassed();
    if (bus.isSilent) return bus;
    std::this_thread::sleep_for(kBetweenKnocks);
    bus.connection = BusConnection::open(addresses);
  }
  if (!bus.connection) return bus;
  while (bus.connection->isOpen() && !bus.connection->isReady() && !deadline.hasPassed()) {
    bus.connection->exchange(deadline.left());
  }
  bus.isSilent = bus.connection->isOpen() && !bus.connection->isReady();
  return bus;
}

PendingCall ask(BusConnection& bus, const char* service, const char* object, const char* member) {
  const Message call(dbus_message_new_method_call(service, object, service, member));
  if (!call) throw std::bad_alloc();
  // A service that is not running keeps nobody waiting.
  dbus_message_set_auto_start(call.get(), FALSE);
  return bus.send(call);
}

struct Silence {
  bool ofSession = false;
  bool ofAccessibility = false;
};

// As the toolkit does: through the service, if it is running.
Silence silenceOfService(BusConnection& session, std::chrono::milliseconds patience) {
  const Deadline deadline(patience);
  // The bus itself answers the first question.
  const PendingCall bus = ask(session, DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, "GetId");
  PendingCall service = ask(session, "org.a11y.Bus", "/org/a11y/bus", "GetAddress");
  const auto isAnswered = [&] { return isCompleted(bus) && isCompleted(service); };
  while (session.isOpen() && !isAnswered() && !deadline.hasPassed()) {
    session.exchange(deadline.left());
  }
  if (!session.isOpen()) return {};
  if (!isAnswered()) return {.ofSession = !isCompleted(bus), .ofAccessibility = true};
  const Message answer = takeAnswer(service);
  const char* address = nullptr;
  if (!answer || !dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_STRING, &address,
                                        DBUS_TYPE_INVALID)) {
    return {};
  }
  return {.ofAccessibility = probe(address, deadline).isSilent};
}

Silence silence(std::chrono::milliseconds patience) {
  const ProbedBus session = probe(sessionBusAddress(), Deadline(patience));
  const char* const given = std::getenv(kAccessibilityVariable);
  if (given && *given) {
    return {.ofSession = session.isSilent,
            .ofAccessibility = probe(given, Deadline(patience)).isSilent};
  }
  const bool isReady = session.connection && session.connection->isReady();
  return isReady ? silenceOfService(*session.connection, patience)
                 : Silence{.ofSession = session.isSilent};
}

}  // namespace

SilentBuses::SilentBuses(std::chrono::milliseconds patience) {
  const Silence silent = silence(patience);
  if (silent.ofSession) hide(kSessionVariable);
  if (silent.ofAccessibility) hide(kAccessibilityVariable);
}

void SilentBuses::hide(const char* name) {
  const char* const value = std::getenv(name);
  hidden_.push_back({name, value ? std::optional<std::string>(value) : std::nullopt});
  setenv(name, kNoBus, 1);
}

void SilentBuses::restore() {
  for (const Variable& variable : hidden_) {
    if (variable.value) {
      setenv(variable.name, variable.value->c_str(), 1);
    } else {
      unsetenv(variable.name);
    }
  }
  hidden_.clear();
}

}  // namespace quorrix
