// Reads from the settings of a running Firefox what its windows do not show.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

// Whether the Firefox with this process id remembers history. False if the user chose that
// it never does, in the settings or with the option --private. nullopt if its command line
// or its settings cannot be read. Never fails.
[[nodiscard]] std::optional<bool> firefoxRemembersHistory(std::uint32_t processId);

// The same for a Firefox with these arguments, UTF-8, the program's name included.
// `folder` is the folder of Firefox's profiles.ini. Firefox keeps a file of each profile
// that it uses locked. If several are in use, all of them must remember.
[[nodiscard]] std::optional<bool> firefoxRemembersHistory(const std::vector<std::string>& arguments,
                                                          const Path& folder);

}  // namespace quorrix
