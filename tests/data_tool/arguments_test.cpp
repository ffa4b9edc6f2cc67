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

TEST_F(ArgumentsTest, HelpIsInTheWordsOfTheManual) {
  run({"--help"});
  EXPECT_NE(output.find("\nUsage: quorrix-data [OPTION...] [COMMAND]\n"), std::string::npos);
  EXPECT_NE(output.find("\nCommands:\n"), std::string::npos);
  run({"search", "--help"});
  EXPECT_NE(output.find("\nUsage: quorrix-data search [OPTION...] [TEXT]\n\nArguments:\n  TEXT  "),
            std::string::npos)
      << output;
  run({"copy", "--help"});
  EXPECT_NE(output.find("\nUsage: quorrix-data copy [OPTION...] FOLDER\n\nArguments:\n  FOLDER  "),
            std::string::npos)
      << output;
}

TEST_F(ArgumentsTest, AnUnknownCommandIsNamed) {
  EXPECT_EQ(refusal({}), "Name a command: list, search, export, check or copy.\n");
  EXPECT_EQ(refusal({"--"}), "Name a command: list, search, export, check or copy.\n");
  EXPECT_EQ(refusal({"delete"}), "There is no command \"delete\".\n");
  EXPECT_EQ(refusal({"lis"}), "There is no command \"lis\".\n");
  EXPECT_EQ(refusal({"--bogus"}), "There is no option \"--bogus\" before a command.\n");
}

TEST_F(ArgumentsTest, AnOptionOfAnotherCommandIsRefused) {
  EXPECT_EQ(refusal({"list", "--bogus"}), "list has no option \"--bogus\".\n");
  EXPECT_EQ(refusal({"list", "-x"}), "list has no option \"-x\".\n");
  EXPECT_EQ(refusal({"list", "--after", "1/1/26"}), "list has no option \"--after\".\n");
  EXPECT_EQ(refusal({"check", "--with", "notes"}), "check has no option \"--with\".\n");
  EXPECT_EQ(refusal({"list", "--version"}), "list has no option \"--version\".\n");
  EXPECT_EQ(refusal({"--data", "Data", "list"}),
            "There is no option \"--data\" before a command.\n");
}

TEST_F(ArgumentsTest, AWordTooMuchIsNamed) {
  EXPECT_EQ(refusal({"list", "one", "two"}), "\"one\" is too much for list.\n");
  EXPECT_EQ(refusal({"list", "check"}), "\"check\" is too much for list.\n");
  EXPECT_EQ(refusal({"search", "a", "b"}), "\"b\" is too much for search.\n");
  EXPECT_EQ(refusal({"copy", "a", "b"}), "\"b\" is too much for copy.\n");
}

TEST_F(ArgumentsTest, AMissingWordIsAskedFor) {
  EXPECT_EQ(refusal({"copy"}), "Name the folder for the copy.\n");
  EXPECT_EQ(refusal({"export"}),
            "Name a format: --format json, csv, html or netscape-bookmarks.\n");
  EXPECT_EQ(refusal({"search"}), "search needs TEXT, --after or both.\n");
  EXPECT_EQ(refusal({"copy", ""}), "The name of a file or folder is empty.\n");
  EXPECT_EQ(refusal({"list", "--data", ""}), "The name of a file or folder is empty.\n");
  for (const char* option : {"--format", "--with", "--data"}) {
    EXPECT_EQ(refusal({"list", option}), '"' + std::string(option) + "\" needs a value.\n");
  }
  EXPECT_EQ(refusal({"list", "--format="}), "\"--format\" needs a value.\n");
  EXPECT_EQ(refusal({"search", "--after"}), "\"--after\" needs a value.\n");
  EXPECT_EQ(refusal({"export", "--output"}), "\"--output\" needs a value.\n");
}

TEST_F(ArgumentsTest, AWrongValueIsNamed) {
  EXPECT_EQ(refusal({"list", "--format", "xml"}),
            "There is no format \"xml\". Name table, json or csv.\n");
  EXPECT_EQ(refusal({"export", "--format", "table"}),
            "There is no format \"table\". Name json, csv, html or netscape-bookmarks.\n");
  EXPECT_EQ(refusal({"list", "--with", "notes,secrets"}),
            "--with has no kind \"secrets\". Name notes, purchases and logins, separated by "
            "commas.\n");
  EXPECT_EQ(refusal({"list", "--no-archives=maybe"}), "\"--no-archives\" takes no value.\n");
  EXPECT_EQ(refusal({"list", "--show-passwords=false"}), "\"--show-passwords\" takes no value.\n");
}

TEST_F(ArgumentsTest, OfAnOptionGivenTwiceTheLastOneCounts) {
  EXPECT_EQ(refusal({"list", "--format", "csv", "--format", "json"}), "");
  EXPECT_TRUE(output.starts_with("[")) << output;
}

TEST_F(ArgumentsTest, TextThatLooksLikeAnOptionCanBeSought) {
  EXPECT_EQ(refusal({"search", "--", "--data"}), "");
}

}  // namespace
}  // namespace quorrix
