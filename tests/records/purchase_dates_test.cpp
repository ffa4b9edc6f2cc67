#include "records/purchase_dates.h"

#include <gtest/gtest.h>

#include "support/failure_number.h"

namespace quorrix {
namespace {

using test::failureNumberOf;

TEST(PurchaseDates, HasFiveHundredAndOneSlots) {
  PurchaseDates dates;
  dates.set(0, "first");
  dates.set(500, "last");
  EXPECT_EQ(dates.at(0), "first");
  EXPECT_EQ(dates.at(499), "");
  EXPECT_EQ(dates.at(500), "last");
  EXPECT_EQ(failureNumberOf([&] { dates.set(501, "one more"); }), 9);
  EXPECT_EQ(failureNumberOf([&] { return dates.at(501); }), 9);
}

TEST(PurchaseDates, DropsEverySlotOfTheTargetAndClosesUp) {
  PurchaseDates dates;
  const char* const before[] = {"a", "b", "a", "c", "d"};
  for (std::size_t i = 0; i < 5; ++i) dates.set(i, before[i]);
  dates.deleteDeletedRecordDateFromDatesArray("a");
  EXPECT_EQ(dates.at(0), "b");
  EXPECT_EQ(dates.at(1), "c");
  EXPECT_EQ(dates.at(2), "d");
  EXPECT_EQ(dates.at(3), "");
  EXPECT_EQ(dates.at(4), "");
}

TEST(PurchaseDates, LeavesTheLastSlotAsItWas) {
  PurchaseDates dates;
  dates.set(0, "a");
  dates.set(499, "b");
  dates.set(500, "a");
  dates.deleteDeletedRecordDateFromDatesArray("a");
  EXPECT_EQ(dates.at(0), "");
  EXPECT_EQ(dates.at(498), "b");
  EXPECT_EQ(dates.at(499), "");
  EXPECT_EQ(dates.at(500), "a");
}

TEST(PurchaseDates, StaysAsItIsForADateThatItLacks) {
  PurchaseDates dates;
  dates.set(0, "a");
  dates.set(1, "b");
  dates.deleteDeletedRecordDateFromDatesArray("A");
  EXPECT_EQ(dates.at(0), "a");
  EXPECT_EQ(dates.at(1), "b");
}

}  // namespace
}  // namespace quorrix
