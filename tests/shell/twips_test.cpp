#include "shell/twips.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(PixelsFromTwips, CountsFifteenTwipsToAPixel) {
  EXPECT_EQ(pixelsFromTwips(15), 1);
  EXPECT_EQ(pixelsFromTwips(1440), 96);
  EXPECT_EQ(pixelsFromTwips(9660), 644);
}

TEST(PixelsFromTwips, TakesTheNearestPixel) {
  EXPECT_EQ(pixelsFromTwips(7), 0);
  EXPECT_EQ(pixelsFromTwips(7.5), 1);
  EXPECT_EQ(pixelsFromTwips(22), 1);
  EXPECT_EQ(pixelsFromTwips(22.5), 2);
  EXPECT_EQ(pixelsFromTwips(23), 2);
}

TEST(PixelsFromTwips, GivesNoneForNothingAndForLess) {
  EXPECT_EQ(pixelsFromTwips(0), 0);
  EXPECT_EQ(pixelsFromTwips(-1), 0);
  EXPECT_EQ(pixelsFromTwips(-1100), 0);
}

TEST(TwipsFromPixels, CountsFifteenTwipsToAPixel) {
  EXPECT_EQ(twipsFromPixels(0), 0);
  EXPECT_EQ(twipsFromPixels(1), 15);
  EXPECT_EQ(twipsFromPixels(96), 1440);
  EXPECT_EQ(twipsFromPixels(-4), -60);
}

}  // namespace
}  // namespace quorrix
