#include "platform/program_folder.h"

#include <system_error>

#include "platform/failure.h"
#include "platform/system_errors.h"

namespace quorrix {

// Also correct after an update has replaced the running file: the link's target then ends
// in " (deleted)", but its folder is the same.
Path programFolder() {
  std::error_code problem;
  const Path executable = std::filesystem::read_symlink("/proc/self/exe", problem);
  if (problem) throw Failure(failureNumberOfErrno(problem.value()));
  return executable.parent_path();
}

}  // namespace quorrix
