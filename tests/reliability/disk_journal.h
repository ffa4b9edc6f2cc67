// What the program asks of the disk while a command runs: every write, sync, rename,
// creation and removal below a folder, in order.
#pragma once

#include <sys/types.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/linux/system_calls.h"

namespace quorrix::test {

// One step on the disk. Files are numbered, because a name may lead to another file later.
struct DiskStep {
  enum Kind { Create, Write, Truncate, SyncFile, SyncFolder, Rename, Unlink, MakeFolder };

  Kind kind;
  int file = 0;            // of Create, Write, Truncate and SyncFile
  Path path = {};          // of the steps on names and of SyncFolder
  Path to = {};            // of Rename
  std::size_t offset = 0;  // of Write; the length of Truncate
  std::string bytes = {};  // of Write
};

struct DiskContents {
  std::map<std::string, int> names;  // of the files, by path
  std::map<int, std::string> bytes;  // by number
  std::set<std::string> folders;     // by path, without a separator at the end
};

class DiskJournal {
 public:
  // Everything in the folder counts as synced.
  explicit DiskJournal(const Path& folder);

  [[nodiscard]] const DiskContents& before() const { return before_; }
  [[nodiscard]] const std::vector<DiskStep>& steps() const { return steps_; }

 private:
  void note(const SystemCallInfo& call, long result);
  void noteOpened(const SystemCallInfo& call, int descriptor);
  [[nodiscard]] int fileOf(int descriptor) const;

  DiskContents before_;
  std::map<ino_t, int> files_;
  int lastFile_ = 0;
  bool isNew_ = false;  // what the current call opens does not exist before it
  std::vector<DiskStep> steps_;
  WatchedSystemCalls calls_;
};

}  // namespace quorrix::test
