// Ensures that at most one program uses a folder, so that no two overwrite each other's
// data. The first one claims the folder; a later start asks it to show its window.
//
// A claim belongs to a process and leaves nothing on the disk. It ends with the process,
// also after a crash, and other machines that use the same file system do not see it. It
// applies among the programs of one user on this machine, and on Windows among those of
// one log-on session. There is one source file per platform.
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

  // Folders are compared by identity and not by path, so two programs that reach one
  // folder through a link are detected. `activationToken` is what the desktop gave this
  // start so that its window may take the keyboard focus, or empty; only Linux passes it
  // on. `patience` is how long to wait for the other program's answer.
  // Call it once.
  [[nodiscard]] ClaimResult claim(const Path& folder, std::string_view activationToken,
                                  std::chrono::milliseconds patience);

  // Valid once the folder has been claimed. On Linux, a socket that becomes readable when
  // a later start asks for the window; on Windows, the handle of an event that is then
  // signalled.
  [[nodiscard]] std::intptr_t signal() const;

  // Answers one later start and returns its activation token; nullopt if no start is
  // waiting. Waits at most 200 ms.
  [[nodiscard]] std::optional<std::string> takeRequest();

 private:
  struct Handles;
  std::unique_ptr<Handles> handles_;
};

}  // namespace quorrix
