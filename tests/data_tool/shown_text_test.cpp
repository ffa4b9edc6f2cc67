#include "data_tool/shown_text.h"

#include <gtest/gtest.h>

#include <string>

namespace quorrix {
namespace {

using namespace std::string_literals;

TEST(EscapedText, LeavesOrdinaryTextAlone) {
  EXPECT_EQ(escapedText("www.garden.example/a?b=1 ~"), "www.garden.example/a?b=1 ~");
  EXPECT_EQ(escapedText("caf\u00E9 \u0E01\u0E34 \u65E5"), "caf\u00E9 \u0E01\u0E34 \u65E5");
  EXPECT_EQ(escapedText(""), "");
}

TEST(EscapedText, EscapesWhatATerminalCouldTakeForACommand) {
  EXPECT_EQ(escapedText("a\x1B[31mb"), "a\\x1B[31mb");
  EXPECT_EQ(escapedText("a\r\n\tb\0c"s), "a\\x0D\\x0A\\x09b\\x00c");
  EXPECT_EQ(escapedText("\x7F"), "\\x7F");
  EXPECT_EQ(escapedText("\u009B31m"), "\\x9B31m");
}

TEST(EscapedText, EscapesWhatTurnsTheTextAround) {
  EXPECT_EQ(escapedText("a\u202Eb\u2066c\u200Fd\u061Ce"),
            "a\\u{202E}b\\u{2066}c\\u{200F}d\\u{61C}e");
  EXPECT_EQ(escapedText("a\u2028b"), "a\\u{2028}b");
}

TEST(EscapedText, ReplacesWhatIsNotUtf8) {
  EXPECT_EQ(escapedText("a\xFF"
                        "b"),
            "a\uFFFDb");
}

TEST(EscapedControls, KeepsTabsAndLineBreaksAndDirections) {
  EXPECT_EQ(escapedControls("a\r\n\tb\u202Ec"), "a\r\n\tb\u202Ec");
  EXPECT_EQ(escapedControls("\x1B[31m\x7F\u009D"), "\\x1B[31m\\x7F\\x9D");
}

TEST(ColumnsOf, CountsCharactersAsATerminalDoes) {
  EXPECT_EQ(columnsOf("garden"), 6U);
  EXPECT_EQ(columnsOf("caf\u00E9"), 4U);
  EXPECT_EQ(columnsOf("\u0E01\u0E34"), 1U);
  EXPECT_EQ(columnsOf("\u65E5\u672C"), 4U);
}

TEST(CutToColumns, EndsWithAnEllipsisIfSomethingIsMissing) {
  EXPECT_EQ(cutToColumns("garden", 6), "garden");
  EXPECT_EQ(cutToColumns("garden", 5), "gard\u2026");
  EXPECT_EQ(cutToColumns("garden", 1), "\u2026");
  EXPECT_EQ(cutToColumns("garden", 0), "");
  EXPECT_EQ(cutToColumns("\u65E5\u672C", 3), "\u65E5\u2026");
  EXPECT_EQ(cutToColumns("caf\u00E9s", 5), "caf\u00E9s");
}

TEST(PaddedTo, AddsBlanksUpToTheWidth) {
  EXPECT_EQ(paddedTo("caf\u00E9", 6), "caf\u00E9  ");
  EXPECT_EQ(paddedTo("garden", 3), "garden");
}

}  // namespace
}  // namespace quorrix
