#include "platform/percent_encoding.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

using namespace std::string_view_literals;

TEST(PercentEncoded, HasTwoDigitsForEachByteThatIsEncoded) {
  EXPECT_EQ(percentEncoded("a b\n\x7F/\xE9\0z"sv, isBlankOrControl), "a%20b%0A%7F/\xE9%00z");
  EXPECT_EQ(percentEncoded("\xE9\x80/", [](char byte) { return byte != '/'; }), "%E9%80/");
  EXPECT_EQ(percentEncoded("", isBlankOrControl), "");
}

}  // namespace
}  // namespace quorrix
