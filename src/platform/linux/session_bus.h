// Where the user's session bus is.
#pragma once

#include <string>

namespace quorrix {

// In D-Bus notation; empty if there is no session bus. Never starts one: browsers would
// not know of a bus that this program started.
[[nodiscard]] std::string sessionBusAddress();

}  // namespace quorrix
