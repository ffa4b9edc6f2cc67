#include "platform/link_owner.h"

namespace quorrix {

bool isLinkOfAnotherUser(const Path& /*path*/) { return false; }

}  // namespace quorrix
