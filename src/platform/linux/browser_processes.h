// The running browsers of this user's session as the kernel lists them, whether or
// not they can be read: so that the user can be told of one that cannot.
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

// `processes` is a folder in the form of /proc. Left out are the helper processes of
// browsers, browsers without windows (headless), those of other users, and those of
// another session than the one with the bus `sessionBus`. A Chromium hides its
// environment; it goes by its crash reporter's, and without one it counts as of this
// session and as not vetoing. Never fails: a process that cannot be looked at is left
// out.
[[nodiscard]] std::vector<BrowserProcess> browserProcesses(const Path& processes,
                                                           const std::string& sessionBus);

}  // namespace quorrix
