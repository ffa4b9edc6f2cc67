#include "platform/failure.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace quorrix {
namespace {

template <typename Exception>
int numberAfterThrowing(const Exception& exception) {
  try {
    throw exception;
  } catch (...) {
    return currentFailureNumber();
  }
}

TEST(Failure, CarriesItsNumber) {
  EXPECT_EQ(Failure(31001).number(), 31001);
  EXPECT_STREQ(Failure(31001).what(), "Failure 31001");
}

TEST(CurrentFailureNumber, IsTheFailuresOwn) {
  EXPECT_EQ(numberAfterThrowing(Failure(53)), 53);
  EXPECT_EQ(numberAfterThrowing(Failure(12345)), 12345);
}

TEST(CurrentFailureNumber, KnowsTheLibrarysExceptions) {
  EXPECT_EQ(numberAfterThrowing(std::bad_alloc()), 7);
  EXPECT_EQ(numberAfterThrowing(std::bad_array_new_length()), 7);
  EXPECT_EQ(numberAfterThrowing(std::out_of_range("")), 9);
  EXPECT_EQ(numberAfterThrowing(std::overflow_error("")), 6);
}

TEST(CurrentFailureNumber, Is51ForEverythingElse) {
  EXPECT_EQ(numberAfterThrowing(std::runtime_error("")), 51);
  EXPECT_EQ(numberAfterThrowing(1), 51);
}

TEST(CurrentFailureNumber, LeavesTheExceptionInFlight) {
  try {
    throw Failure(71);
  } catch (...) {
    EXPECT_EQ(currentFailureNumber(), 71);
    EXPECT_EQ(currentFailureNumber(), 71);
    EXPECT_THROW(throw, Failure);
  }
}

}  // namespace
}  // namespace quorrix
