#include "platform/system_clock.h"

#include <gtest/gtest.h>

#include <ctime>

#include "support/eventually.h"

namespace quorrix {
namespace {

std::time_t momentOf(const LocalDateTime& local) {
  std::tm parts{};
  parts.tm_year = local.year - 1900;
  parts.tm_mon = local.month - 1;
  parts.tm_mday = local.day;
  parts.tm_hour = local.hour;
  parts.tm_min = local.minute;
  parts.tm_sec = local.second;
  parts.tm_isdst = -1;
  return std::mktime(&parts);
}

TEST(SystemClock, ShowsThePresentInLocalTime) {
  SystemClock clock;
  const std::time_t before = std::time(nullptr);
  const std::time_t shown = momentOf(clock.now());
  const std::time_t after = std::time(nullptr);
  EXPECT_LE(before, shown + 1);  // the two underlying clocks may round differently
  EXPECT_LE(shown, after + 1);
}

TEST(SystemClock, MeasuresElapsedTime) {
  SystemClock clock;
  const auto start = clock.elapsed();
  EXPECT_TRUE(test::eventually([&] { return clock.elapsed() > start; }));
}

}  // namespace
}  // namespace quorrix
