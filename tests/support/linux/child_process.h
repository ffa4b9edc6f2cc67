// For tests in which a program dies or needs an environment of its own: a forked child
// that runs one operation and ends without destructors.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace quorrix::test {

inline constexpr int kChildThrew = 99;

// Returns the status that waitpid() reports for a child that exits with the result of
// `operation`, or with kChildThrew if an exception leaves it. Returns -1 if there was no
// child.
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
