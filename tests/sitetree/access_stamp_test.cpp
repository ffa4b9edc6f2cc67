#include "sitetree/access_stamp.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

LocalDateTime at(int hour, int minute, int second) {
  return {.year = 2026, .month = 7, .day = 9, .hour = hour, .minute = minute, .second = second};
}

LocalDateTime inYear(int year) {
  return {.year = year, .month = 1, .day = 2, .hour = 9, .minute = 8, .second = 7};
}

TEST(AccessStampText, ShowsDateAndTime) {
  EXPECT_EQ(accessStampText(at(15, 24, 35)), "7/9/26 3:24:35 PM");
}

TEST(AccessStampText, PadsOnlyYearMinuteAndSecond) {
  EXPECT_EQ(accessStampText({2005, 1, 2, 3, 4, 5}), "1/2/05 3:04:05 AM");
}

TEST(AccessStampText, CallsMidnightTwelveInTheMorning) {
  EXPECT_EQ(accessStampText(at(0, 0, 0)), "7/9/26 12:00:00 AM");
  EXPECT_EQ(accessStampText(at(0, 59, 59)), "7/9/26 12:59:59 AM");
}

TEST(AccessStampText, CallsNoonTwelveInTheAfternoon) {
  EXPECT_EQ(accessStampText(at(12, 0, 0)), "7/9/26 12:00:00 PM");
}

TEST(AccessStampText, ChangesAtTheHoursAroundNoonAndMidnight) {
  EXPECT_EQ(accessStampText(at(1, 0, 0)), "7/9/26 1:00:00 AM");
  EXPECT_EQ(accessStampText(at(11, 59, 59)), "7/9/26 11:59:59 AM");
  EXPECT_EQ(accessStampText(at(13, 0, 0)), "7/9/26 1:00:00 PM");
  EXPECT_EQ(accessStampText(at(23, 59, 59)), "7/9/26 11:59:59 PM");
}

TEST(AccessStampText, WritesTheYearAsTwoDigits) {
  EXPECT_EQ(accessStampText(inYear(1999)), "1/2/99 9:08:07 AM");
  EXPECT_EQ(accessStampText(inYear(2000)), "1/2/00 9:08:07 AM");
  EXPECT_EQ(accessStampText(inYear(2098)), "1/2/98 9:08:07 AM");
}

TEST(AccessStampText, HasTwentyCharactersAtMost) {
  const std::string longest = accessStampText({2026, 12, 31, 22, 59, 59});
  EXPECT_EQ(longest, "12/31/26 10:59:59 PM");
  EXPECT_EQ(longest.size(), 20U);
}

TEST(StampEnd, IsATilde) { EXPECT_EQ(kStampEnd, '~'); }

}  // namespace
}  // namespace quorrix
