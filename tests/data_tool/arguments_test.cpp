// The command line: help, version, and what is refused.
#include <gtest/gtest.h>

#include "data_tool/tool_stage.h"

namespace quorrix {
namespace {

class ArgumentsTest : public testing::Test, protected test::ToolStage {
 protected:
  // Empty if the command line is accepted.
  std::string refusal(const std::vector<std::string>& arguments) {
    givenEmptyFiles();
    if (run(arguments) != 2) return "";
    EXPECT_EQ(output, "");
    const std::string hint = "Try 'quorrix-data --help' for more information.\n";
    EXPECT_TRUE(error.ends_with(hint)) << error;
    EXPECT_TRUE(error.starts_with("quorrix-data: ")) << error;
    return error.substr(14, error.size() - 14 - hint.size());
  }
};

TEST_F(ArgumentsTest, HelpNamesEveryCommand) {
  EXPECT_EQ(run({"--help"}), 0);
  for (const char* command : {"list", "search", "export", "check", "copy"}) {
    EXPECT_NE(output.find(std::string("\n  ") + command + " "), std::string::npos) << command;
  }
  EXPECT_NE(output.find("Exit status: 0"), std::string::npos);
  EXPECT_EQ(error, "");
}

TEST_F(ArgumentsTest, EveryCommandHasHelpOfItsOwn) {
  for (const char* command : {"list", "search", "export", "check", "copy"}) {
    EXPECT_EQ(run({command, "--help"}), 0);
    EXPECT_NE(output.find("--data FOLDER"), std::string::npos) << command;
    EXPECT_NE(output.find("--no-archives"), std::string::npos) << command;
  }
}

TEST_F(ArgumentsTest, VersionIsOneLine) {
  EXPECT_EQ(run({"--version"}), 0);
  EXPECT_EQ(output, "quorrix-data " QUORRIX_EXPECTED_VERSION "\n");
}

TEST_F(ArgumentsTest, WrongCommandLinesAreRefused) {
  EXPECT_EQ(refusal({}), "name a command: list, search, export, check or copy\n");
  EXPECT_EQ(refusal({"delete"}), "The following argument was not expected: delete\n");
  EXPECT_EQ(refusal({"list", "--format", "xml"}), "--format: xml not in {csv,json,table}\n");
  EXPECT_EQ(refusal({"list", "--with", "notes,secrets"}),
            "--with: name notes, purchases and logins, separated by commas\n");
  EXPECT_EQ(refusal({"export"}), "--format is required\n");
  EXPECT_EQ(refusal({"copy"}), "FOLDER is required\n");
  EXPECT_EQ(refusal({"list", "one"}), "The following argument was not expected: one\n");
  EXPECT_NE(refusal({"list", "check"}), "");
}

TEST_F(ArgumentsTest, TextThatLooksLikeAnOptionCanBeSought) {
  EXPECT_EQ(refusal({"search", "--", "--data"}), "");
}

}  // namespace
}  // namespace quorrix
