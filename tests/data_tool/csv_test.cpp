#include "data_tool/csv.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(CsvLine, SeparatesFieldsAndEndsWithCrLf) {
  EXPECT_EQ(csvLine({"a", "", "b c"}), "a,,b c\r\n");
  EXPECT_EQ(csvLine({""}), "\r\n");
}

TEST(CsvLine, QuotesWhatWouldEndAField) {
  EXPECT_EQ(csvLine({"a,b", "say \"no\"", "two\r\nlines", "two\nlines"}),
            "\"a,b\",\"say \"\"no\"\"\",\"two\r\nlines\",\"two\nlines\"\r\n");
}

TEST(CsvLine, EscapesWhatATerminalCouldTakeForACommand) {
  EXPECT_EQ(csvLine({"a\x1B[31m", "\u009D"}), "a\\x1B[31m,\\x9D\r\n");
}

TEST(CsvLine, LetsNoSpreadsheetReadAFormula) {
  EXPECT_EQ(csvLine({"=1+1", "+1", "-1", "@A1", "\tx", "a=1"}),
            "'=1+1,'+1,'-1,'@A1,\"'\tx\",a=1\r\n");
  EXPECT_EQ(csvLine({"a;=1", "a\t=1"}), "\"a;=1\",\"a\t=1\"\r\n");
  EXPECT_EQ(csvLine({"=HYPERLINK(\"http://x\",\"y\")", "\r=1"}),
            "\"'=HYPERLINK(\"\"http://x\"\",\"\"y\"\")\",\"'\r=1\"\r\n");
  EXPECT_EQ(csvLine({"\n=1"}), "\"'\n=1\"\r\n");
  EXPECT_EQ(csvLine({"'=1", "it's"}), "''=1,it's\r\n");
}

}  // namespace
}  // namespace quorrix
