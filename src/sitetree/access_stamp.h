// Dates and times as the data files hold them: one format everywhere, whatever
// the locale, so that what one machine wrote another one reads.
#pragma once

#include <string>

#include "platform/clock.h"

namespace quorrix {

// Stands behind every stamp in a record and marks its end.
inline constexpr char kStampEnd = '~';

// "M/d/yy h:mm:ss AM" or "PM", at most 20 characters; the year as two digits,
// of which 99 means 1999 and every other value 20yy.
[[nodiscard]] std::string accessStampText(const LocalDateTime& moment);

}  // namespace quorrix
