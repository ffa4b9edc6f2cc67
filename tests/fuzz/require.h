// What a fuzz target calls when it has found something.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace quorrix::test {

// Ends the run with the broken promise, so that the fuzzer keeps the input.
inline void require(bool holds, const char* promise) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

}  // namespace quorrix::test
