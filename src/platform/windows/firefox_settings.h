// Reads from the settings of a running Firefox what its windows do not show.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace quorrix {

// Whether the Firefox with this process id remembers history. False if it never does: by
// its settings, by a policy of the administrator, or by the option -private. nullopt if
// that cannot be found out. `processes` is how many Firefox processes have windows. Never
// fails.
[[nodiscard]] std::optional<bool> firefoxRemembersHistory(std::uint32_t processId,
                                                          std::size_t processes);

struct FirefoxFiles {
  Path program;   // the folder of firefox.exe
  Path profiles;  // the folder of profiles.ini
};

// The same without the policies in the registry, for a Firefox with these arguments,
// UTF-8, the program's name included.
[[nodiscard]] std::optional<bool> firefoxRemembersHistory(const std::vector<std::string>& arguments,
                                                          const FirefoxFiles& files,
                                                          std::size_t processes);

}  // namespace quorrix
