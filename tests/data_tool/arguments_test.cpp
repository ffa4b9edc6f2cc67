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

TEST_F(ArgumentsTest, HelpHasAShortName) {
  EXPECT_EQ(run({"--help"}), 0);
  const std::string help = output;
  EXPECT_EQ(run({"-h"}), 0);
  EXPECT_EQ(output, help);
  EXPECT_EQ(run({"list", "-h"}), 0);
  EXPECT_NE(output.find("--with KINDS"), std::string::npos);
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
  EXPECT_EQ(refusal({"--bogus"}), "Unknown option \"--bogus\". Options follow the command.\n");
}

TEST_F(ArgumentsTest, AnOptionOfAnotherCommandIsRefused) {
  EXPECT_EQ(refusal({"list", "--bogus"}), "\"--bogus\" is not an option of list.\n");
  EXPECT_EQ(refusal({"list", "-x"}), "\"-x\" is not an option of list.\n");
  EXPECT_EQ(refusal({"list", "--after", "1/1/26"}), "\"--after\" is not an option of list.\n");
  EXPECT_EQ(refusal({"check", "--with", "notes"}), "\"--with\" is not an option of check.\n");
  EXPECT_EQ(refusal({"list", "--version"}), "\"--version\" is not an option of list.\n");
  EXPECT_EQ(refusal({"--data", "Data", "list"}),
            "Unknown option \"--data\". Options follow the command.\n");
}

TEST_F(ArgumentsTest, AnExtraWordIsNamed) {
  EXPECT_EQ(refusal({"list", "one", "two"}), "list does not accept \"one\".\n");
  EXPECT_EQ(refusal({"list", "check"}), "list does not accept \"check\".\n");
  EXPECT_EQ(refusal({"search", "a", "b"}), "search does not accept \"b\".\n");
  EXPECT_EQ(refusal({"copy", "a", "b"}), "copy does not accept \"b\".\n");
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

TEST_F(ArgumentsTest, AnEmptyValueIsNotReplacedByTheNextWord) {
  EXPECT_EQ(refusal({"export", "--format", "json", "--output=", "--no-archives"}),
            "\"--output\" needs a value.\n");
  EXPECT_EQ(refusal({"list", "--data=", "Quorrix/Data"}), "\"--data\" needs a value.\n");
  EXPECT_EQ(refusal({"search", "--after=", "1/1/26"}), "\"--after\" needs a value.\n");
  EXPECT_EQ(refusal({"search", "--after", ""}), "\"--after\" needs a value.\n");
  EXPECT_EQ(refusal({"list", "--with", ""}), "\"--with\" needs a value.\n");
  EXPECT_EQ(
      refusal({"list", "--with", "notes,"}),
      "\"\" is not a kind for --with. Use notes, purchases or logins, separated by commas.\n");
  EXPECT_EQ(refusal({"list", "--with=", "notes"}), "\"--with\" needs a value.\n");
  EXPECT_EQ(refusal({"list", "--bogus="}), "\"--bogus=\" is not an option of list.\n");
  EXPECT_EQ(refusal({"search", "--", "--data="}), "");
}

TEST_F(ArgumentsTest, ShowPasswordsIsRefusedForBookmarks) {
  EXPECT_EQ(refusal({"export", "--format", "netscape-bookmarks", "--show-passwords"}),
            "Bookmarks contain no passwords. Leave out --show-passwords.\n");
  EXPECT_EQ(refusal({"export", "--format", "html", "--show-passwords"}), "");
}

TEST_F(ArgumentsTest, AWrongValueIsNamed) {
  EXPECT_EQ(refusal({"list", "--format", "xml"}),
            "There is no format \"xml\". Name table, json or csv.\n");
  EXPECT_EQ(refusal({"export", "--format", "table"}),
            "There is no format \"table\". Name json, csv, html or netscape-bookmarks.\n");
  EXPECT_EQ(refusal({"list", "--with", "notes,secrets"}),
            "\"secrets\" is not a kind for --with. Use notes, purchases or logins, separated by "
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
