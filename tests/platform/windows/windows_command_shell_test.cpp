#include "platform/windows/windows_command_shell.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(AsOneArgument, LeavesAnOrdinaryAddressAsItIs) {
  EXPECT_EQ(asOneArgument("https://one.two.three/a?b=c&d=%0A|$(e)#f"),
            "https://one.two.three/a?b=c&d=%0A|$(e)#f");
}

TEST(AsOneArgument, EncodesWhatCouldEndTheArgument) {
  EXPECT_EQ(asOneArgument("http://a.b.c/\" -x \t\n\x7F"), "http://a.b.c/%22%20-x%20%09%0A%7F");
}

TEST(AsOneArgument, IsUtf8) {
  EXPECT_EQ(asOneArgument("http://a.b.c/\xE9"), "http://a.b.c/\xC3\xA9");
}

}  // namespace
}  // namespace quorrix
