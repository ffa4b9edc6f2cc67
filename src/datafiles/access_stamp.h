// Dates and times in the format of the data files. The format does not depend on the
// locale, so that files written on one machine can be read on another.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace quorrix {

// Follows every stamp in a record and marks its end.
inline constexpr char kStampEnd = '~';

// A calendar day. Month and day count from 1, and `year` is the full year, such as 2026. An earlier
// day compares less than a later one.
struct CalendarDate {
  int year = 0;
  int month = 0;
  int day = 0;

  auto operator<=>(const CalendarDate&) const = default;
};

// The only rule for two-digit years: 99 means 1999, every other value 20yy.
[[nodiscard]] constexpr int yearOfTwoDigits(int digits) {
  return digits + (digits == 99 ? 1900 : 2000);
}

// "M/d/yy h:mm:ss AM" or "PM", at most 20 characters.
[[nodiscard]] std::string accessStampText(const LocalDateTime& moment);

// Reads "M/d/yy", whose yy follows yearOfTwoDigits(), or "M/d/yyyy". Month and
// day may have a leading zero. No other character may be around or between the parts.
// Throws kTypeMismatch for anything else and for a day that does not exist.
[[nodiscard]] CalendarDate readCalendarDate(std::string_view text);

// The date and time of a stamp, to the second. An earlier time compares less than a later
// one.
struct StampTime {
  CalendarDate date;
  int hour = 0;  // 0 to 23
  int minute = 0;
  int second = 0;

  auto operator<=>(const StampTime&) const = default;
};

// Reads a stamp that accessStampText() wrote. Tolerates small deviations, such as extra
// blanks in the time and a year of four digits. Throws kTypeMismatch for anything else.
[[nodiscard]] StampTime readAccessStamp(std::string_view stamp);

// The same, but nullopt if the stamp cannot be read. It compares less than every time.
[[nodiscard]] std::optional<StampTime> stampTime(std::string_view stamp);

// The date of a stamp: the text before its first blank. Throws kTypeMismatch if the stamp
// has no blank or if that text is not a date.
[[nodiscard]] CalendarDate stampDate(std::string_view stamp);

}  // namespace quorrix
