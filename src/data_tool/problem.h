// What ends a command: a sentence for standard error. The exit status is then kStatusOfProblem.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/failure.h"
#include "platform/file_system.h"

namespace quorrix {

inline constexpr int kStatusFine = 0;
inline constexpr int kStatusOfFindings = 1;  // check found something, search found nothing
inline constexpr int kStatusOfProblem = 2;

// Its text is UTF-8. It may contain characters that escapedText() has to escape.
class Problem final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  // "PATH: " and the reason for a failure of the file system.
  [[nodiscard]] static Problem ofFile(const Path& path, const std::string& reason);
  [[nodiscard]] static Problem ofFile(const Path& path, int failureNumber);
};

// What is read by another program while it is written.
inline constexpr const char* kUseStandardOutput =
    "This is a device or a pipe. Use standard output instead.";

// Calls `work`, and turns its Failure into a Problem of `path`.
template <typename Work>
auto withPath(const Path& path, Work work) {
  try {
    return work();
  } catch (const Failure& reason) {
    throw Problem::ofFile(path, reason.number());
  }
}

}  // namespace quorrix
