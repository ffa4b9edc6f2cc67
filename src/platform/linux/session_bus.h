// Where the user's session bus is.
#pragma once

#include <string>

namespace quorrix {

// In the notation of D-Bus; empty without a session bus. Only a bus that is already
// running: browsers would not know of one that this program started.
[[nodiscard]] std::string sessionBusAddress();

}  // namespace quorrix
