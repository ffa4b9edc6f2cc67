// The running browsers of this user's session as the kernel lists them, whether or not
// they can be read, so that the user can be told of one that cannot.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/browsers/browser_kind.h"
#include "platform/file_system.h"

namespace quorrix {

struct BrowserProcess {
  std::uint32_t id = 0;
  BrowserKind kind{};
  bool vetoesAccessibility = false;  // an environment variable of the process says so
};

// `processes` is a folder with the layout of /proc. The result omits the helper processes
// of browsers, browsers without windows (headless), browsers of other users, and browsers
// of a session whose bus is not `sessionBus`. Chromium hides its environment, so that of
// its crash reporter is used. Without a crash reporter it counts as part of this session
// and as not vetoing. Never fails: a process that cannot be read is omitted.
[[nodiscard]] std::vector<BrowserProcess> browserProcesses(const Path& processes,
                                                           const std::string& sessionBus);

}  // namespace quorrix
