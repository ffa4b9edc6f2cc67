// Reads from the settings of a running Firefox what its windows do not show.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/file_system.h"

namespace quorrix {

// Whether the Firefox with this process id remembers history, if a window of it lacks the
// Firefox View button. False if the user chose that it never does, in the settings or
// with the option --private. True if the user removed the button from the tool bars,
// which explains why the window lacks it. nullopt if neither is known, and if the profile
// cannot be found or read. `processes` is a folder with the layout of /proc. Never fails.
[[nodiscard]] std::optional<bool> firefoxRemembersHistory(const Path& processes,
                                                          std::uint32_t processId);

}  // namespace quorrix
