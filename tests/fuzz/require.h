// Reports what a fuzz target has found.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace quorrix::test {

// If the promise does not hold, prints it and aborts, so that the fuzzer keeps the input.
inline void require(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

}  // namespace quorrix::test
