// Dates and times as the data files hold them: one format everywhere, whatever
// the locale, so that what one machine wrote another one reads.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace quorrix {

// Stands behind every stamp in a record and marks its end.
inline constexpr char kStampEnd = '~';

// A day of the calendar: month and day count from 1, the year has all its
// digits. The earlier of two days is the smaller one.
struct CalendarDate {
  int year = 0;
  int month = 0;
  int day = 0;

  auto operator<=>(const CalendarDate&) const = default;
};

// The one rule for years of two digits: 99 means 1999, every other value 20yy.
[[nodiscard]] constexpr int yearOfTwoDigits(int digits) {
  return digits + (digits == 99 ? 1900 : 2000);
}

// "M/d/yy h:mm:ss AM" or "PM", at most 20 characters; the year as two digits.
[[nodiscard]] std::string accessStampText(const LocalDateTime& moment);

// Reads "M/d/yy", whose year means what it means in a stamp, or "M/d/yyyy"; month
// and day may have a leading zero, and nothing may stand around or between them.
// Throws kTypeMismatch for anything else and for a day that is in no calendar.
[[nodiscard]] CalendarDate readCalendarDate(std::string_view text);

// The second of a stamp; the earlier of two stamps is the smaller one.
struct StampTime {
  CalendarDate date;
  int hour = 0;  // 0 to 23
  int minute = 0;
  int second = 0;

  auto operator<=>(const StampTime&) const = default;
};

// Reads what accessStampText() writes. Throws kTypeMismatch for anything else.
[[nodiscard]] StampTime readAccessStamp(std::string_view stamp);

// The day of a stamp: what stands before its first blank. Throws kTypeMismatch for a
// stamp without a blank and for one that begins with no date.
[[nodiscard]] CalendarDate stampDate(std::string_view stamp);

}  // namespace quorrix
