#include "platform/linux/bus_connection.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>
#include <vector>

namespace quorrix {
namespace {

struct AddressEntriesRelease {
  void operator()(DBusAddressEntry** entries) const noexcept { dbus_address_entries_free(entries); }
};

// The name of the socket as connect() expects it: a path, or a NUL and an abstract name.
// Empty for anything else; other transports could block or start programs.
std::string socketNameOf(const std::string& address) {
  ErrorHolder error;
  DBusAddressEntry** list = nullptr;
  int count = 0;
  if (!dbus_parse_address(address.c_str(), &list, &count, error.get())) return {};
  const std::unique_ptr<DBusAddressEntry*, AddressEntriesRelease> owner(list);
  if (count < 1 || std::string_view(dbus_address_entry_get_method(list[0])) != "unix") return {};
  if (const char* path = dbus_address_entry_get_value(list[0], "path")) return path;
  if (const char* name = dbus_address_entry_get_value(list[0], "abstract")) {
    return std::string(1, '\0') + name;
  }
  return {};
}

// libdbus connects in blocking mode and waits for ever for a stopped bus whose queue of
// new connections is full, so try a non-blocking connection first. (The attempt itself
// takes a place in the queue, so a bus with exactly one place left could still make us
// wait.) Returns 0 or the number of the error.
int knockAt(const std::string& socketName) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (socketName.empty() || socketName.size() >= sizeof address.sun_path) return EINVAL;
  std::memcpy(address.sun_path, socketName.data(), socketName.size());
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + socketName.size());
  const int knock = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (knock < 0) return errno;
  const bool isAccepted = connect(knock, reinterpret_cast<sockaddr*>(&address), length) == 0;
  const int error = isAccepted ? 0 : errno;
  close(knock);
  return error;
}

std::vector<std::string> singleAddresses(const std::string& addresses) {
  std::vector<std::string> single;
  for (std::size_t begin = 0; begin < addresses.size();) {
    const std::size_t end = std::min(addresses.find(';', begin), addresses.size());
    single.push_back(addresses.substr(begin, end - begin));
    begin = end + 1;
  }
  return single;
}

}  // namespace

std::unique_ptr<BusConnection> BusConnection::open(const std::string& addresses) {
  for (const std::string& address : singleAddresses(addresses)) {
    if (knockAt(socketNameOf(address)) != 0) continue;
    ErrorHolder error;
    DBusConnection* connection = dbus_connection_open_private(address.c_str(), error.get());
    if (connection != nullptr) {
      return std::unique_ptr<BusConnection>(new BusConnection(connection));
    }
  }
  return nullptr;
}

bool BusConnection::isQueueFull(const std::string& addresses) {
  return std::ranges::any_of(singleAddresses(addresses), [](const std::string& address) {
    return knockAt(socketNameOf(address)) == EAGAIN;
  });
}

BusConnection::BusConnection(DBusConnection* connection) : connection_(connection) {
  dbus_connection_set_exit_on_disconnect(connection_, FALSE);
  const Message hello(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                   DBUS_INTERFACE_DBUS, "Hello"));
  introduction_ = send(hello);
}

BusConnection::~BusConnection() {
  introduction_.reset();
  dbus_connection_close(connection_);
  dbus_connection_unref(connection_);
}

bool BusConnection::isOpen() const { return dbus_connection_get_is_connected(connection_) != 0; }

PendingCall BusConnection::send(const Message& call) {
  DBusPendingCall* pending = nullptr;
  if (!call ||
      !dbus_connection_send_with_reply(connection_, call.get(), &pending, DBUS_TIMEOUT_INFINITE)) {
    throw std::bad_alloc();
  }
  return PendingCall(pending);  // null when the connection is closed
}

void BusConnection::exchange(std::chrono::milliseconds wait) {
  dbus_connection_read_write(connection_, static_cast<int>(wait.count()));
  while (dbus_connection_dispatch(connection_) == DBUS_DISPATCH_DATA_REMAINS) {
  }
  if (introduction_ && dbus_pending_call_get_completed(introduction_.get())) finishIntroduction();
}

void BusConnection::finishIntroduction() {
  const Message answer(dbus_pending_call_steal_reply(introduction_.get()));
  introduction_.reset();
  const char* name = nullptr;
  if (answer &&
      dbus_message_get_args(answer.get(), nullptr, DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID) &&
      dbus_message_get_type(answer.get()) == DBUS_MESSAGE_TYPE_METHOD_RETURN) {
    dbus_bus_set_unique_name(connection_, name);
  } else {
    dbus_connection_close(connection_);
  }
}

}  // namespace quorrix
