// What the settings of a running Firefox say about windows that do not show it.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/file_system.h"

namespace quorrix {

// Whether the Firefox with this process id, a window of which lacks the Firefox View
// button, remembers history. False when the user chose that it never does, in the
// settings or with the option --private. True when the user removed the button from the
// tool bars, which explains why the window lacks it. nullopt when neither is known, and
// when the profile cannot be found or read. `processes` is a folder in the form of
// /proc. Never fails.
[[nodiscard]] std::optional<bool> firefoxRemembersHistory(const Path& processes,
                                                          std::uint32_t processId);

}  // namespace quorrix
