// A private connection to a message bus. exchange() waits no longer than requested; open()
// waits only if the bus's queue of connections is full. The usual ways to connect cannot
// be used here: dbus_bus_register() waits 25 seconds for a
// bus that does not answer, and a connection from dbus_bus_get() ends the program when
// the bus goes away.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/linux/dbus_handles.h"

namespace quorrix {

class BusConnection {
 public:
  // Connects to the first local socket among `addresses` (in D-Bus notation, separated by
  // ";") that accepts a connection, and introduces itself. nullptr if none accepts one.
  [[nodiscard]] static std::unique_ptr<BusConnection> open(const std::string& addresses);

  // Whether a bus among `addresses` has a full queue of connections, as a stopped one has
  // after a while. open() then returns nullptr, and others who connect wait.
  [[nodiscard]] static bool isQueueFull(const std::string& addresses);

  ~BusConnection();
  BusConnection(const BusConnection&) = delete;
  BusConnection& operator=(const BusConnection&) = delete;

  // False once the bus has gone away; such a connection stays closed.
  [[nodiscard]] bool isOpen() const;

  // True once the bus has answered the introduction; nothing may be sent before.
  [[nodiscard]] bool isReady() const { return isOpen() && !introduction_; }

  // The call has no time limit of its own; its owner decides how long to wait.
  [[nodiscard]] PendingCall send(const Message& call);

  // Sends and receives what is pending. Returns after `wait` at the latest.
  void exchange(std::chrono::milliseconds wait);

 private:
  explicit BusConnection(DBusConnection* connection);
  void finishIntroduction();

  DBusConnection* connection_;
  PendingCall introduction_;
};

}  // namespace quorrix
