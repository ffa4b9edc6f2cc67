// For tests that expect a failure: EXPECT_EQ(failureNumberOf([&] { ... }), 75).
#pragma once

#include "platform/failure.h"

namespace quorrix::test {

inline constexpr int kNoFailure = 0;

// The numbers with which a call to the file system may fail; the last one represents all
// others.
inline constexpr int kFileFailures[] = {7, 53, 57, 61, 67, 68, 71, 75, 76, 51};

// Returns the number of the Failure that `operation` throws, or kNoFailure if it throws
// nothing. Other exceptions propagate.
template <typename Operation>
[[nodiscard]] int failureNumberOf(Operation operation) {
  try {
    static_cast<void>(operation());
  } catch (const Failure& raised) {
    return raised.number();
  }
  return kNoFailure;
}

// Whether `operation` throws a Failure which says that another program has the file
// locked.
template <typename Operation>
[[nodiscard]] bool failsBecauseInUse(Operation operation) {
  try {
    static_cast<void>(operation());
  } catch (const Failure& raised) {
    return raised.isFileInUse();
  }
  return false;
}

}  // namespace quorrix::test
