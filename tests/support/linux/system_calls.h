// Watches the system calls of this thread on files below a folder, below all code of the
// program, and makes chosen ones fail. Only for a test program that links
// system_calls.cpp: its functions take the place of the C library's.
#pragma once

#include <sys/types.h>

#include <functional>
#include <span>

#include "platform/file_system.h"

namespace quorrix::test {

enum class SystemCall {
  Open,
  Stat,
  Lock,
  Read,
  Write,
  Truncate,
  SyncData,
  Sync,
  Rename,
  Unlink,
  MakeFolder,
  OpenFolder,  // opendir
  ReadFolder,  // readdir
  Access,      // faccessat
};

struct SystemCallInfo {
  SystemCall kind;
  Path path;                         // of the open file, for a call on a descriptor
  int descriptor = -1;               // or -1
  Path to = {};                      // of Rename
  int flags = 0;                     // of Open; the operation of Lock
  off_t offset = 0;                  // of Write; the length of Truncate
  std::span<const char> bytes = {};  // of Write
};

class WatchedSystemCalls {
 public:
  // `folder` is an absolute path without links. One object at a time for each thread.
  explicit WatchedSystemCalls(const Path& folder);
  ~WatchedSystemCalls();
  WatchedSystemCalls(const WatchedSystemCalls&) = delete;
  WatchedSystemCalls& operator=(const WatchedSystemCalls&) = delete;

  // Called before each call. If it returns an errno value other than 0, the call is not
  // made and fails with that.
  void beforeEach(std::function<int(const SystemCallInfo&)> answer) { before_ = std::move(answer); }

  // Called after each call that succeeded, with its result.
  void afterEach(std::function<void(const SystemCallInfo&, long result)> look) {
    after_ = std::move(look);
  }

  // From now on, a file system that accepts at most this many bytes in one write.
  void cutWritesTo(std::size_t bytes) { mostBytes_ = bytes; }

  // From now on, names below the folder are found whatever the case of their letters.
  void foldCase() { foldsCase_ = true; }

  // For the functions that take the place of the C library's.
  [[nodiscard]] bool watches(const Path& path) const;
  [[nodiscard]] int answerTo(const SystemCallInfo& call) const;
  void noteDone(const SystemCallInfo& call, long result) const;
  [[nodiscard]] Path found(const Path& path) const;
  [[nodiscard]] std::size_t mostBytes() const { return mostBytes_; }

 private:
  Path folder_;
  std::function<int(const SystemCallInfo&)> before_;
  std::function<void(const SystemCallInfo&, long)> after_;
  bool foldsCase_ = false;
  std::size_t mostBytes_ = static_cast<std::size_t>(-1);
};

}  // namespace quorrix::test
