// At most one program runs on a folder, so that no two overwrite each other's data. The
// first one claims it; a later start asks that one to show its window.
//
// A claim belongs to a process and leaves nothing on the disk: it ends when the process
// does, also after a crash, and another machine that uses the same file system knows
// nothing of it. It holds among the programs of one user on this machine, on Windows
// among those of one log-on session. One source per platform.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace quorrix {

enum class ClaimResult {
  Claimed,
  Answered,    // another program has the folder and was asked to show its window
  Unanswered,  // another program has the folder and does not answer
  Unavailable  // no such folder, or the system grants no claim: run without one
};

class FolderClaim {
 public:
  FolderClaim();
  ~FolderClaim();
  FolderClaim(const FolderClaim&) = delete;
  FolderClaim& operator=(const FolderClaim&) = delete;

  // In bytes; a longer token is not passed on.
  static constexpr std::size_t kLongestToken = 4096;

  // The folder's identity counts and not its path, so a link does not hide that two
  // programs use one folder. `activationToken` is what the desktop gave this start so that
  // its window may take the keyboard, empty for none; only Linux passes it on. `patience`
  // is how long to wait for the other program's answer. To be called once.
  [[nodiscard]] ClaimResult claim(const Path& folder, std::string_view activationToken,
                                  std::chrono::milliseconds patience);

  // Once the folder has been claimed: a socket on Linux and the handle of an event on
  // Windows, readable or signalled when a later start asks for the window.
  [[nodiscard]] std::intptr_t signal() const;

  // Answers one later start and returns its activation token; nullopt when there is none
  // to be answered. Waits a fifth of a second at most.
  [[nodiscard]] std::optional<std::string> takeRequest();

 private:
  struct Handles;
  std::unique_ptr<Handles> handles_;
};

}  // namespace quorrix
