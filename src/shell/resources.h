// The pictures that are compiled into the program.
#pragma once

#include <QIcon>

namespace quorrix {

// Call this before the first picture is used. The pictures are in a static library, and
// the linker would otherwise leave them out.
void registerResources();

// In all its sizes; null if the pictures cannot be read.
[[nodiscard]] QIcon applicationIcon();

// The same with a red badge, for use while tracking is on.
[[nodiscard]] QIcon trackingIcon();

}  // namespace quorrix
