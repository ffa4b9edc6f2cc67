// The date that a new purchase begins with.
#pragma once

#include <QLocale>
#include <QString>

#include "platform/clock.h"
#include "platform/code_page.h"

namespace quorrix {

// The moment as the user's locale writes it: its short date and its long time without the
// time zone. If that is longer than the field of a record, or has a character that is not
// in the code page (such as the digits of most Arabic locales), the form of accessStampText().
[[nodiscard]] QString purchaseDateText(const LocalDateTime& moment, const QLocale& locale,
                                       const CodePage& codePage);

}  // namespace quorrix
