// For tests that expect a failure: EXPECT_EQ(failureNumberOf([&] { ... }), 75).
#pragma once

#include "platform/failure.h"

namespace quorrix::test {

inline constexpr int kNoFailure = 0;

// What a call to the file system may fail with; the last stands for all others.
inline constexpr int kFileFailures[] = {7, 53, 57, 61, 67, 68, 71, 75, 76, 51};

// The number of the Failure that `operation` throws, kNoFailure when it throws
// nothing; any other exception goes through.
template <typename Operation>
[[nodiscard]] int failureNumberOf(Operation operation) {
  try {
    static_cast<void>(operation());
  } catch (const Failure& raised) {
    return raised.number();
  }
  return kNoFailure;
}

// Whether `operation` throws a Failure that says that another program has the file locked.
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
