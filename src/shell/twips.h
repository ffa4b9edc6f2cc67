// Twips, the logical unit of the window layout: 1,440 to the inch, and a pixel
// at scale 1 is a ninety-sixth of an inch.
#pragma once

#include <cmath>

namespace quorrix {

inline constexpr int kTwipsPerPixel = 15;

// Rounds to the nearest pixel; a negative length becomes 0.
[[nodiscard]] inline int pixelsFromTwips(double twips) {
  return twips <= 0 ? 0 : static_cast<int>(std::lround(twips / kTwipsPerPixel));
}

[[nodiscard]] constexpr int twipsFromPixels(int pixels) { return pixels * kTwipsPerPixel; }

}  // namespace quorrix
