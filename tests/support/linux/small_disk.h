// Mounts a small file system at a folder, for this process only. Only for a forked child,
// so that the mounts of the test program stay unchanged.
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

// A mount needs rights that a user other than root has only in a user namespace of its
// own, as its root.
inline bool enterOwnMounts() {
  const std::string user = std::to_string(::geteuid());
  const std::string group = std::to_string(::getegid());
  if (user == "0") return ::unshare(CLONE_NEWNS) == 0;
  return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && wrote("/proc/self/setgroups", "deny") &&
         wrote("/proc/self/uid_map", "0 " + user + " 1") &&
         wrote("/proc/self/gid_map", "0 " + group + " 1");
}

// Returns false if that is not permitted.
[[nodiscard]] inline bool mountOneMegabyteAt(const Path& folder) {
  return enterOwnMounts() && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         ::mount("quorrix-test", folder.c_str(), "tmpfs", 0, "size=1m,mode=0700") == 0;
}

}  // namespace quorrix::test
