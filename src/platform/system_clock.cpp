#include "platform/system_clock.h"

#include <ctime>

#include "platform/failure.h"

namespace quorrix {
namespace {

// The C library may look up the time zone only once. Making it look again keeps the
// timestamps right for a user who travels while the program runs.
bool toLocalTime(std::time_t moment, std::tm& local) {
#ifdef _WIN32
  ::_tzset();
  return ::localtime_s(&local, &moment) == 0;
#else
  ::tzset();
  return ::localtime_r(&moment, &local) != nullptr;
#endif
}

}  // namespace

LocalDateTime SystemClock::now() {
  std::tm local{};
  const auto moment = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  if (!toLocalTime(moment, local)) throw Failure(failure::kOverflow);
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec};
}

std::chrono::milliseconds SystemClock::elapsed() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace quorrix
