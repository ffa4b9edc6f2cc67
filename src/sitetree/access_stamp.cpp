#include "sitetree/access_stamp.h"

#include <array>
#include <cstdio>

namespace quorrix {

std::string accessStampText(const LocalDateTime& moment) {
  const int hour = moment.hour % 12 == 0 ? 12 : moment.hour % 12;
  std::array<char, 80> text;
  std::snprintf(text.data(), text.size(), "%d/%d/%02d %d:%02d:%02d %s", moment.month, moment.day,
                moment.year % 100, hour, moment.minute, moment.second,
                moment.hour < 12 ? "AM" : "PM");
  return text.data();
}

}  // namespace quorrix
