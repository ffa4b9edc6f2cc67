// Gives this process a small file system of its own at a folder. Only for a forked
// child: it leaves the mounts of the program that runs the tests alone.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "platform/file_system.h"

namespace quorrix::test {

inline bool wrote(const Path& path, const std::string& text) {
  std::ofstream file(path);
  file << text;
  return static_cast<bool>(file.flush());
}

// A mount needs rights that other users than root have in a user namespace of their
// own, where they are root.
inline bool enterOwnMounts() {
  const std::string user = std::to_string(::geteuid());
  const std::string group = std::to_string(::getegid());
  if (user == "0") return ::unshare(CLONE_NEWNS) == 0;
  return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && wrote("/proc/self/setgroups", "deny") &&
         wrote("/proc/self/uid_map", "0 " + user + " 1") &&
         wrote("/proc/self/gid_map", "0 " + group + " 1");
}

// False where that is not permitted.
[[nodiscard]] inline bool mountOneMegabyteAt(const Path& folder) {
  return enterOwnMounts() && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         ::mount("quorrix-test", folder.c_str(), "tmpfs", 0, "size=1m,mode=0700") == 0;
}

}  // namespace quorrix::test
