// Where a copy of folders is made: in a folder that gets its final name, or moves its entries to
// their final place, when everything in it is complete.
#pragma once

#include <optional>
#include <vector>

#include "data_tool/stage_folder.h"
#include "platform/file_system.h"

namespace quorrix {

class CopyStage {
 public:
  // If `target` is missing, the stage is a folder beside it; finish() renames it. Otherwise
  // `target` has to be an empty folder, which may be a mounted disk or in a folder that cannot be
  // written: the stage is a folder inside it, and finish() moves the entries out of it. Throws
  // Problem, also if an earlier copy was not finished.
  CopyStage(FileSystem& files, const Path& target);

  // Removes everything again unless finish() has returned.
  ~CopyStage();
  CopyStage(const CopyStage&) = delete;
  CopyStage& operator=(const CopyStage&) = delete;

  [[nodiscard]] const Path& path() const { return stage_->path(); }

  void finish();

 private:
  void requireEmptyTarget();
  void moveOut();
  void move(const Path& from, const Path& to);

  FileSystem& files_;
  Path target_;
  bool isInside_;
  std::optional<StageFolder> stage_;
  std::vector<Path> moved_;  // the final paths of what finish() has moved
  bool isFinished_ = false;
};

}  // namespace quorrix
