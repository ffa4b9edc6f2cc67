#include "platform/linux/session_bus.h"

#include <dbus/dbus.h>

#include <cstdlib>
#include <new>

namespace quorrix {

std::string sessionBusAddress() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address) {
    return address;
  }
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (!folder || !*folder) return {};
  const std::string path = std::string(folder) + "/bus";
  char* escaped = dbus_address_escape_value(path.c_str());
  if (!escaped) throw std::bad_alloc();
  std::string address = std::string("unix:path=") + escaped;
  dbus_free(escaped);
  return address;
}

}  // namespace quorrix
