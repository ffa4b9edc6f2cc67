#include "sitetree/access_stamp.h"

#include <array>
#include <cstdio>

#include "platform/failure.h"

namespace quorrix {
namespace {

[[noreturn]] void failToReadDate() { throw Failure(failure::kTypeMismatch); }

struct Number {
  int value = 0;
  std::size_t digits = 0;
};

// Takes the digits that `text` begins with, `most` of them at most.
Number takeNumber(std::string_view& text, std::size_t most) {
  Number number;
  while (number.digits < most && number.digits < text.size()) {
    const char character = text[number.digits];
    if (character < '0' || character > '9') break;
    number.value = number.value * 10 + (character - '0');
    ++number.digits;
  }
  text.remove_prefix(number.digits);
  return number;
}

int takeMonthOrDay(std::string_view& text) {
  const Number number = takeNumber(text, 2);
  if (number.digits == 0 || !text.starts_with('/')) failToReadDate();
  text.remove_prefix(1);
  return number.value;
}

int takeYear(std::string_view& text) {
  const Number number = takeNumber(text, 4);
  if (number.digits == 4) return number.value;
  if (number.digits != 2) failToReadDate();
  return number.value == 99 ? 1999 : 2000 + number.value;
}

int daysInMonth(int year, int month) {
  constexpr std::array<int, 13> kDays{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && isLeapYear ? 29 : kDays[static_cast<std::size_t>(month)];
}

bool isInCalendar(const CalendarDate& date) {
  return date.year >= 1 && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
         date.day <= daysInMonth(date.year, date.month);
}

}  // namespace

std::string accessStampText(const LocalDateTime& moment) {
  const int hour = moment.hour % 12 == 0 ? 12 : moment.hour % 12;
  std::array<char, 80> text;
  std::snprintf(text.data(), text.size(), "%d/%d/%02d %d:%02d:%02d %s", moment.month, moment.day,
                moment.year % 100, hour, moment.minute, moment.second,
                moment.hour < 12 ? "AM" : "PM");
  return text.data();
}

CalendarDate readCalendarDate(std::string_view text) {
  CalendarDate date;
  date.month = takeMonthOrDay(text);
  date.day = takeMonthOrDay(text);
  date.year = takeYear(text);
  if (!text.empty() || !isInCalendar(date)) failToReadDate();
  return date;
}

CalendarDate stampDate(std::string_view stamp) {
  const auto blank = stamp.find(' ');
  if (blank == std::string_view::npos) failToReadDate();
  return readCalendarDate(stamp.substr(0, blank));
}

}  // namespace quorrix
