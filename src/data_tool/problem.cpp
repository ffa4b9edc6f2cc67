#include "data_tool/problem.h"

#include "platform/command_line.h"
#include "shell/failure_messages.h"

namespace quorrix {

Problem Problem::ofFile(const Path& path, const std::string& reason) {
  return Problem{shownPath(path) + ": " + reason};
}

Problem Problem::ofFile(const Path& path, int failureNumber) {
  return ofFile(path, failureMessage(FailureFamily::OtherCommand, failureNumber));
}

}  // namespace quorrix
