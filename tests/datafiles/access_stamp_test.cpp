#include "datafiles/access_stamp.h"

#include <gtest/gtest.h>

#include <string>

#include "support/failure_number.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failureNumberOf;

// "1999-11-16", so that a failing test shows the day.
std::string shown(const CalendarDate& date) {
  return std::to_string(date.year) + "-" + std::to_string(date.month) + "-" +
         std::to_string(date.day);
}

std::string dateIn(std::string_view text) { return shown(readCalendarDate(text)); }

int failureOfReading(std::string_view text) {
  return failureNumberOf([text] { return readCalendarDate(text); });
}

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

TEST(ReadCalendarDate, ReadsMonthThenDayThenYear) {
  EXPECT_EQ(dateIn("11/16/99"), "1999-11-16");
  EXPECT_EQ(dateIn("7/9/26"), "2026-7-9");
  EXPECT_EQ(dateIn("12/31/25"), "2025-12-31");
  EXPECT_EQ(dateIn("1/1/01"), "2001-1-1");
}

TEST(ReadCalendarDate, TakesOnlyTheYear99ForOneOfThe1900s) {
  EXPECT_EQ(dateIn("1/2/99"), "1999-1-2");
  EXPECT_EQ(dateIn("1/2/98"), "2098-1-2");
  EXPECT_EQ(dateIn("1/2/00"), "2000-1-2");
  EXPECT_EQ(dateIn("1/2/50"), "2050-1-2");
}

TEST(ReadCalendarDate, TakesAYearOfFourDigitsAsItStands) {
  EXPECT_EQ(dateIn("1/2/1999"), "1999-1-2");
  EXPECT_EQ(dateIn("1/2/1998"), "1998-1-2");
  EXPECT_EQ(dateIn("1/2/2099"), "2099-1-2");
  EXPECT_EQ(dateIn("1/2/0001"), "1-1-2");
  EXPECT_EQ(dateIn("1/2/9999"), "9999-1-2");
  EXPECT_EQ(dateIn("10/20/2030"), "2030-10-20");
}

TEST(ReadCalendarDate, TakesLeadingZeros) { EXPECT_EQ(dateIn("01/02/03"), "2003-1-2"); }

TEST(ReadCalendarDate, KnowsTheLastDayOfEveryMonth) {
  EXPECT_EQ(dateIn("1/31/25"), "2025-1-31");
  EXPECT_EQ(dateIn("2/28/25"), "2025-2-28");
  EXPECT_EQ(dateIn("3/31/25"), "2025-3-31");
  EXPECT_EQ(dateIn("4/30/25"), "2025-4-30");
  EXPECT_EQ(dateIn("5/31/25"), "2025-5-31");
  EXPECT_EQ(dateIn("6/30/25"), "2025-6-30");
  EXPECT_EQ(dateIn("7/31/25"), "2025-7-31");
  EXPECT_EQ(dateIn("8/31/25"), "2025-8-31");
  EXPECT_EQ(dateIn("9/30/25"), "2025-9-30");
  EXPECT_EQ(dateIn("10/31/25"), "2025-10-31");
  EXPECT_EQ(dateIn("11/30/25"), "2025-11-30");
  EXPECT_EQ(dateIn("12/31/25"), "2025-12-31");
  for (const char* const dayAfter :
       {"1/32/25", "2/29/25", "3/32/25", "4/31/25", "5/32/25", "6/31/25", "7/32/25", "8/32/25",
        "9/31/25", "10/32/25", "11/31/25", "12/32/25"}) {
    EXPECT_EQ(failureOfReading(dayAfter), 13) << dayAfter;
  }
}

TEST(ReadCalendarDate, KnowsTheLeapYears) {
  EXPECT_EQ(dateIn("2/29/24"), "2024-2-29");
  EXPECT_EQ(dateIn("2/29/00"), "2000-2-29");
  EXPECT_EQ(dateIn("2/29/2400"), "2400-2-29");
  EXPECT_EQ(failureOfReading("2/29/2100"), 13);
  EXPECT_EQ(failureOfReading("2/29/99"), 13);
  EXPECT_EQ(failureOfReading("2/30/24"), 13);
}

TEST(ReadCalendarDate, FailsForADayThatIsInNoCalendar) {
  for (const char* const text :
       {"13/45/99", "13/1/25", "0/1/25", "1/0/25", "00/00/00", "99/99/99", "1/1/0000"}) {
    EXPECT_EQ(failureOfReading(text), 13) << text;
  }
}

TEST(ReadCalendarDate, FailsForWhatIsNoDate) {
  for (const char* const text :
       {"",       "/",       "//",      "yesterday", "a/b/cc",    "1/2",      "1/2/",
        "1//25",  "/2/25",   "1/2/3",   "1/2/123",   "1/2/12345", "001/2/25", "1/002/25",
        "1-2-25", "1.2.25",  "1/2-25",  "-1/2/25",   "+1/2/25",   "1/2/-5",   "1/2/2a",
        "1/2/a5", "1/2/25/", "1/2/25x", "1:2:25"}) {
    EXPECT_EQ(failureOfReading(text), 13) << text;
  }
}

TEST(ReadCalendarDate, FailsForBlanksAndNuls) {
  for (const std::string& text : {" 1/2/25"s, "1/2/25 "s, "1/ 2/25"s, "1 /2/25"s, "1/2/ 25"s, " "s,
                                  "1/2/25\0"s, "\0"s, "1/2/2\0"s}) {
    EXPECT_EQ(failureOfReading(text), 13) << text;
  }
}

// A stamp is often a part of a record's bytes.
TEST(ReadCalendarDate, ReadsNothingAfterTheEndOfTheText) {
  EXPECT_EQ(failureOfReading(std::string_view("1/2/2025").substr(0, 3)), 13);
  EXPECT_EQ(failureOfReading({}), 13);
}

TEST(ReadCalendarDate, FailsForDigitsOfOtherKinds) {
  EXPECT_EQ(failureOfReading("1/2/2\xB2"), 13);  // superscript two
  EXPECT_EQ(failureOfReading("\xB9/2/25"), 13);  // superscript one
}

TEST(CalendarDate, IsOrderedByYearThenMonthThenDay) {
  EXPECT_LT((CalendarDate{1999, 12, 31}), (CalendarDate{2000, 1, 1}));
  EXPECT_LT((CalendarDate{2025, 1, 31}), (CalendarDate{2025, 2, 1}));
  EXPECT_LT((CalendarDate{2025, 2, 1}), (CalendarDate{2025, 2, 2}));
  EXPECT_LE((CalendarDate{2025, 2, 2}), (CalendarDate{2025, 2, 2}));
  EXPECT_EQ((CalendarDate{2025, 2, 2}), (CalendarDate{2025, 2, 2}));
}

TEST(StampDate, IsWhatStandsBeforeTheFirstBlank) {
  EXPECT_EQ(shown(stampDate("11/16/99 2:12:26 PM~")), "1999-11-16");
  EXPECT_EQ(shown(stampDate("7/9/26 3:24:35 PM")), "2026-7-9");
  EXPECT_EQ(shown(stampDate("1/2/05 ")), "2005-1-2");
  EXPECT_EQ(shown(stampDate("1/2/05 whatever")), "2005-1-2");
}

TEST(StampDate, FailsWithoutABlank) {
  EXPECT_EQ(failureNumberOf([] { return stampDate("11/16/99"); }), 13);
  EXPECT_EQ(failureNumberOf([] { return stampDate("11/16/99~"); }), 13);
  EXPECT_EQ(failureNumberOf([] { return stampDate(""); }), 13);
}

TEST(StampDate, FailsWhenNoDateStandsBeforeTheBlank) {
  EXPECT_EQ(failureNumberOf([] { return stampDate(" "); }), 13);
  EXPECT_EQ(failureNumberOf([] { return stampDate(" 11/16/99 2:12:26 PM"); }), 13);
  EXPECT_EQ(failureNumberOf([] { return stampDate("2:12:26 PM 11/16/99"); }), 13);
  EXPECT_EQ(failureNumberOf([] { return stampDate("2/30/24 2:12:26 PM"); }), 13);
}

TEST(StampDate, ReadsWhatTheStampsWriterWrote) {
  EXPECT_EQ(shown(stampDate(accessStampText({1999, 12, 31, 23, 59, 59}))), "1999-12-31");
  EXPECT_EQ(shown(stampDate(accessStampText({2000, 2, 29, 0, 0, 0}))), "2000-2-29");
}

TEST(StampEnd, IsATilde) { EXPECT_EQ(kStampEnd, '~'); }

// "2026-7-9 15:24:35", so that a failing test shows the second.
std::string secondIn(std::string_view stamp) {
  const StampTime time = readAccessStamp(stamp);
  return shown(time.date) + " " + std::to_string(time.hour) + ":" + std::to_string(time.minute) +
         ":" + std::to_string(time.second);
}

TEST(ReadAccessStamp, ReadsTheSecond) {
  EXPECT_EQ(secondIn("7/9/26 3:24:35 PM"), "2026-7-9 15:24:35");
  EXPECT_EQ(secondIn("11/16/99 2:12:06 AM"), "1999-11-16 2:12:6");
  EXPECT_EQ(secondIn("7/9/26 12:00:00 AM"), "2026-7-9 0:0:0");
  EXPECT_EQ(secondIn("7/9/26 12:59:59 PM"), "2026-7-9 12:59:59");
}

TEST(ReadAccessStamp, FailsForWhatIsNoStamp) {
  for (const char* const text :
       {"", "7/9/26", "7/9/26 ", "7/9/26 3:24:35", "7/9/26 3:24:35 XM", "7/9/26 13:24:35 PM",
        "7/9/26 0:24:35 AM", "7/9/26 3:60:35 PM", "7/9/26 3:24:60 PM", "7/9/26 3:24:35 PM ",
        "7/9/26 3:-4:35 PM", "2/30/26 3:24:35 PM", "7/9/26 3:24:35 PMs", "7/9/26 3:24:35 PX",
        "7/9/26 012:24:35 PM"}) {
    EXPECT_EQ(failureNumberOf([text] { return readAccessStamp(text); }), 13) << text;
  }
}

TEST(ReadAccessStamp, ReadsNothingAfterTheEndOfTheStamp) {
  const std::string_view longer = "7/9/26 3:24:35 PXM";
  EXPECT_EQ(failureNumberOf([&] { return readAccessStamp(longer.substr(0, 17)); }), 13);
}

TEST(ReadAccessStamp, ToleratesBlanksAndShortNumbers) {
  const StampTime expected{.date = {2026, 7, 9}, .hour = 15, .minute = 4, .second = 5};
  for (const char* const text : {"7/9/26  3:4:5 PM", "7/9/2026 03:04:05PM", "7/9/26 3: 4: 5 PM"}) {
    EXPECT_EQ(readAccessStamp(text), expected) << text;
  }
  EXPECT_EQ(secondIn("7/9/26  3:4:5 AM"), "2026-7-9 3:4:5");
  EXPECT_EQ(secondIn("7/9/26 12:4:5 AM"), "2026-7-9 0:4:5");
  EXPECT_EQ(secondIn("7/9/26  3:0:0 AM"), "2026-7-9 3:0:0");
}

TEST(StampTime, IsOrderedByDateThenHourThenMinuteThenSecond) {
  const StampTime noon{.date = {2026, 7, 9}, .hour = 12, .minute = 30, .second = 30};
  EXPECT_LT((StampTime{.date = {2026, 7, 8}, .hour = 23, .minute = 59, .second = 59}), noon);
  EXPECT_LT((StampTime{.date = {2026, 7, 9}, .hour = 11, .minute = 59, .second = 59}), noon);
  EXPECT_LT((StampTime{.date = {2026, 7, 9}, .hour = 12, .minute = 29, .second = 59}), noon);
  EXPECT_LT((StampTime{.date = {2026, 7, 9}, .hour = 12, .minute = 30, .second = 29}), noon);
  EXPECT_LT(noon, (StampTime{.date = {2026, 7, 9}, .hour = 12, .minute = 30, .second = 31}));
}

TEST(StampTime, IsMissingIfItCannotBeRead) {
  EXPECT_EQ(stampTime("7/9/26 3:04:05 PM"),
            (StampTime{.date = {2026, 7, 9}, .hour = 15, .minute = 4, .second = 5}));
  EXPECT_EQ(stampTime("yesterday"), std::nullopt);
  EXPECT_LT(stampTime("yesterday"), stampTime("1/1/00 12:00:00 AM"));
}

}  // namespace
}  // namespace quorrix
