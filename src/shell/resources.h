// The pictures that are compiled into the program.
#pragma once

#include <QIcon>

namespace quorrix {

// Call it before the first picture is asked for: they lie in a static library, from
// which the linker would leave them out.
void registerResources();

// In all its sizes; null where the pictures cannot be read.
[[nodiscard]] QIcon applicationIcon();

// The same with a red badge, for while tracking is on.
[[nodiscard]] QIcon trackingIcon();

}  // namespace quorrix
