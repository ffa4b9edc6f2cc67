// For tests in which a program dies, or needs a world of its own: a forked child
// that runs one operation and ends without destructors.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace quorrix::test {

inline constexpr int kChildThrew = 99;

// What waitpid() tells of a child that exits with what `operation` returns, and
// with kChildThrew when an exception leaves it; -1 when there was no child.
template <typename Operation>
[[nodiscard]] int waitStatusOfAChild(Operation operation) {
  const pid_t child = ::fork();
  if (child == 0) {
    int result = kChildThrew;
    try {
      result = operation();
    } catch (...) {
      result = kChildThrew;
    }
    ::_exit(result);
  }
  int status = -1;
  return child > 0 && ::waitpid(child, &status, 0) == child ? status : -1;
}

}  // namespace quorrix::test
