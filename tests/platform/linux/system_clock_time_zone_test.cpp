#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "platform/system_clock.h"

namespace quorrix {
namespace {

// Changes the time zone of this program, and restores it at the end.
class TimeZone {
 public:
  TimeZone() {
    if (const char* zone = std::getenv("TZ")) old_ = zone;
  }
  ~TimeZone() {
    if (old_) {
      ::setenv("TZ", old_->c_str(), 1);
    } else {
      ::unsetenv("TZ");
    }
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

  void becomes(const char* zone) { ::setenv("TZ", zone, 1); }

 private:
  std::optional<std::string> old_;
};

TEST(SystemClock, FollowsTheTimeZoneWhileTheProgramRuns) {
  SystemClock clock;
  TimeZone zone;
  zone.becomes("UTC+12");
  const LocalDateTime west = clock.now();
  zone.becomes("UTC-12");
  const LocalDateTime east = clock.now();
  EXPECT_NE(west.day, east.day);
}

}  // namespace
}  // namespace quorrix
