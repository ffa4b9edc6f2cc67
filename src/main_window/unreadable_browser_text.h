// The sentences that tell the user which browsers cannot be read, and what to do.
#pragma once

#include <QString>
#include <vector>

#include "platform/window_system.h"

namespace quorrix {

// One line for each reason that applies. A line names its browsers in the order of the
// list, each of them once. Empty for an empty list. A name of more than 30 characters is
// cut and ends with an ellipsis.
[[nodiscard]] QString unreadableBrowserText(const std::vector<UnreadableBrowser>& browsers);

}  // namespace quorrix
