#include "datafiles/access_stamp.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "platform/failure.h"

namespace quorrix {
namespace {

[[noreturn]] void failToReadDate() { throw Failure(failure::kTypeMismatch); }

constexpr std::size_t kShortestDate = 6;  // "1/2/03"
constexpr std::size_t kLongestDate = 10;  // "10/20/2030"

// The value of a digit; above 9 for any other character.
constexpr unsigned digitOf(char character) {
  return static_cast<unsigned>(static_cast<unsigned char>(character)) - '0';
}

constexpr bool isDigit(char character) { return digitOf(character) <= 9; }

// A number of one or two digits at the beginning of a text.
struct ShortNumber {
  explicit ShortNumber(const char* text)
      : isNumber(isDigit(text[0])),
        digits(isDigit(text[1]) ? 2U : 1U),
        value(digits == 1 ? digitOf(text[0]) : 10 * digitOf(text[0]) + digitOf(text[1])) {}

  bool isNumber;
  unsigned digits;
  unsigned value;
};

int readYear(std::string_view text) {
  if (!std::all_of(text.begin(), text.end(), isDigit)) failToReadDate();
  unsigned year = 0;
  for (const char character : text) year = year * 10 + digitOf(character);
  if (text.size() == 4) return static_cast<int>(year);
  if (text.size() != 2) failToReadDate();
  return yearOfTwoDigits(static_cast<int>(year));
}

int daysInMonth(int year, int month) {
  constexpr std::array<int, 13> kDays{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && isLeapYear ? 29 : kDays[static_cast<std::size_t>(month)];
}

bool isInCalendar(const CalendarDate& date) {
  return date.year >= 1 && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
         (date.day <= 28 || date.day <= daysInMonth(date.year, date.month));
}

int twoDigits(std::string_view text) {
  return static_cast<int>(10 * digitOf(text[0]) + digitOf(text[1]));
}

// Reads "h:mm:ss AM" or "PM" exactly as accessStampText() writes it, which is much faster than
// to tolerate deviations. False for anything else.
bool readClock(std::string_view clock, StampTime& time) {
  constexpr std::size_t kAfterHour = std::string_view(":mm:ss AM").size();
  if (clock.size() != kAfterHour + 1 && clock.size() != kAfterHour + 2) return false;
  const std::string_view hourText = clock.substr(0, clock.size() - kAfterHour);
  const std::string_view rest = clock.substr(hourText.size());
  const bool isForm = std::all_of(hourText.begin(), hourText.end(), isDigit) && rest[0] == ':' &&
                      isDigit(rest[1]) && isDigit(rest[2]) && rest[3] == ':' && isDigit(rest[4]) &&
                      isDigit(rest[5]) && rest[6] == ' ' && (rest[7] == 'A' || rest[7] == 'P') &&
                      rest[8] == 'M';
  if (!isForm) return false;
  const int hour =
      hourText.size() == 1 ? static_cast<int>(digitOf(hourText[0])) : twoDigits(hourText);
  time.minute = twoDigits(rest.substr(1));
  time.second = twoDigits(rest.substr(4));
  if (hour < 1 || hour > 12 || time.minute >= 60 || time.second >= 60) return false;
  time.hour = hour % 12 + (rest[7] == 'P' ? 12 : 0);
  return true;
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
  if (text.size() < kShortestDate || text.size() > kLongestDate) failToReadDate();
  // No bounds check is needed: the second "/" is at most the sixth character, and the
  // shortest date has six.
  const char* rest = text.data();
  const ShortNumber month(rest);
  rest += month.digits;
  const bool isFirstSlash = *rest++ == '/';
  const ShortNumber day(rest);
  rest += day.digits;
  const bool isSecondSlash = *rest++ == '/';
  if (!month.isNumber || !isFirstSlash || !day.isNumber || !isSecondSlash) failToReadDate();
  const CalendarDate date{
      .year = readYear(text.substr(static_cast<std::size_t>(rest - text.data()))),
      .month = static_cast<int>(month.value),
      .day = static_cast<int>(day.value)};
  if (!isInCalendar(date)) failToReadDate();
  return date;
}

StampTime readAccessStamp(std::string_view stamp) {
  StampTime time{.date = stampDate(stamp)};
  if (readClock(stamp.substr(stamp.find(' ') + 1), time)) return time;
  const std::string clock(stamp.substr(stamp.find(' ')));
  std::array<char, 3> half{};
  int end = 0;
  const int fields = std::sscanf(clock.c_str(), " %2d:%2d:%2d %2s%n", &time.hour, &time.minute,
                                 &time.second, half.data(), &end);
  const bool isAfternoon = half.data() == std::string_view("PM");
  const bool isHalfKnown = isAfternoon || half.data() == std::string_view("AM");
  const bool isInRange = time.hour >= 1 && time.hour <= 12 && time.minute >= 0 &&
                         time.minute < 60 && time.second >= 0 && time.second < 60;
  if (fields != 4 || static_cast<std::size_t>(end) != clock.size() || !isHalfKnown || !isInRange) {
    failToReadDate();
  }
  time.hour = time.hour % 12 + (isAfternoon ? 12 : 0);
  return time;
}

std::optional<StampTime> stampTime(std::string_view stamp) {
  try {
    return readAccessStamp(stamp);
  } catch (const Failure&) {
    return std::nullopt;
  }
}

CalendarDate stampDate(std::string_view stamp) {
  const auto blank = stamp.find(' ');
  if (blank == std::string_view::npos) failToReadDate();
  return readCalendarDate(stamp.substr(0, blank));
}

}  // namespace quorrix
