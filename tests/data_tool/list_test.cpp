// What list and search print.
#include <gtest/gtest.h>

#include "data_tool/tool_stage.h"

namespace quorrix {
namespace {

using test::siteRecord;
using test::ToolStage;

class ListTest : public testing::Test, protected ToolStage {
 protected:
  ListTest() {
    given("Data/nodes.dat", siteRecord("news.harbour.example/tides", 'N', "11/21/26 4:05:00 PM~") +
                                std::string(322, ' ') +
                                siteRecord("www.garden.example", 'S', "1/2/26 12:00:00 AM~"));
    given("Archives/May/nodes.dat", siteRecord("www.mill.example", 'U', "yesterday~"));
    given("Data/notes.dat",
          test::notesRecord("www.garden.example", "Water \"the\" roses.\r\nPrune in March."));
    given("Data/info.dat", test::loginRecord("www.garden.example", "anna", "tulip7"));
    given("Data/purchases.dat",
          test::purchaseRecord("www.garden.example") +
              test::purchaseRecord("www.garden.example", {.date = "3/15/26~",
                                                          .price = "8~",
                                                          .paymentMethod = "~",
                                                          .item = "=Gloves~",
                                                          .description = "~",
                                                          .quantity = "~"}));
  }
};

TEST_F(ListTest, IsATableForPeople) {
  EXPECT_EQ(run({"list"}), 0);
  EXPECT_EQ(output,
            "VISITED               SCHEME  ARCHIVE  ADDRESS\n"
            "2026-11-21 16:05:00   http             news.harbour.example/tides\n"
            "2026-01-02 00:00:00   https            www.garden.example\n"
            "yesterday             none    May      www.mill.example\n");
  EXPECT_EQ(error, "");
}

TEST_F(ListTest, HasNoColumnForArchivesWithoutOne) {
  EXPECT_EQ(run({"list", "--no-archives"}), 0);
  EXPECT_EQ(output,
            "VISITED               SCHEME  ADDRESS\n"
            "2026-11-21 16:05:00   http    news.harbour.example/tides\n"
            "2026-01-02 00:00:00   https   www.garden.example\n");
}

TEST_F(ListTest, ShowsWhatIsKeptBelowItsSite) {
  EXPECT_EQ(run({"list", "--no-archives", "--with", "notes,purchases,logins"}), 0);
  EXPECT_EQ(output,
            "VISITED               SCHEME  ADDRESS\n"
            "2026-11-21 16:05:00   http    news.harbour.example/tides\n"
            "2026-01-02 00:00:00   https   www.garden.example\n"
            "    notes: Water \"the\" roses. / Prune in March.\n"
            "    user ID: anna\n"
            "    purchase: 3/14/26 10:00:00 AM; 2; Rose shears; 24.50; Card; For the climbers\n"
            "    purchase: 3/15/26; =Gloves; 8\n");
}

TEST_F(ListTest, CutsLinesOnATerminalOnly) {
  terminalWidth = 50;
  run({"list", "--no-archives"});
  EXPECT_EQ(output,
            "VISITED               SCHEME  ADDRESS\n"
            "2026-11-21 16:05:00   http    news.harbour.exampl\u2026\n"
            "2026-01-02 00:00:00   https   www.garden.example\n");
}

TEST_F(ListTest, WritesAddressesBelowOnANarrowTerminal) {
  terminalWidth = 40;
  run({"list", "--no-archives"});
  EXPECT_EQ(output,
            "VISITED               SCHEME\n"
            "    ADDRESS\n"
            "2026-11-21 16:05:00   http\n"
            "    news.harbour.example/tides\n"
            "2026-01-02 00:00:00   https\n"
            "    www.garden.example\n");
}

TEST_F(ListTest, EscapesControlCharactersInTheTable) {
  given("Data/nodes.dat", siteRecord("a.b.c/\x1B[2J\x9B", 'N'));
  run({"list", "--no-archives"});
  EXPECT_EQ(output,
            "VISITED               SCHEME  ADDRESS\n"
            "2026-07-01 08:00:00   http    a.b.c/\\x1B[2J\u203A\n");
}

TEST_F(ListTest, IsJsonForPrograms) {
  EXPECT_EQ(run({"list", "--format", "json"}), 0);
  EXPECT_EQ(
      output,
      "[\n"
      R"({"address":"news.harbour.example/tides","scheme":"http","visited":"2026-11-21T16:05:00","archive":null},)"
      "\n"
      R"({"address":"www.garden.example","scheme":"https","visited":"2026-01-02T00:00:00","archive":null},)"
      "\n"
      R"({"address":"www.mill.example","scheme":"none","visited":null,"stamp":"yesterday","archive":"May"})"
      "\n]\n");
}

TEST_F(ListTest, HasNoPasswordsInJsonUnlessAsked) {
  run({"search", "garden", "--no-archives", "--format", "json", "--with",
       "notes,purchases,logins"});
  EXPECT_EQ(output,
            "[\n"
            R"({"address":"www.garden.example","scheme":"https","visited":"2026-01-02T00:00:00",)"
            R"("archive":null,"notes":"Water \"the\" roses.\r\nPrune in March.","userId":"anna",)"
            R"("purchases":[{"date":"3/14/26 10:00:00 AM","item":"Rose shears","price":"24.50",)"
            R"("quantity":"2","paymentMethod":"Card","description":"For the climbers"},)"
            R"({"date":"3/15/26","item":"=Gloves","price":"8","quantity":"","paymentMethod":"",)"
            R"("description":""}]})"
            "\n]\n");
  run({"search", "garden", "--no-archives", "--format", "json", "--show-passwords"});
  EXPECT_EQ(output,
            "[\n"
            R"({"address":"www.garden.example","scheme":"https","visited":"2026-01-02T00:00:00",)"
            R"("archive":null,"userId":"anna","password":"tulip7"})"
            "\n]\n");
}

TEST_F(ListTest, IsCsvWithALineForEachPurchase) {
  EXPECT_EQ(run({"list", "--format", "csv", "--with", "purchases,logins", "--show-passwords"}), 0);
  EXPECT_EQ(output,
            "archive,address,scheme,flag,visited,stamp,user_id,password,purchase_date,item,price,"
            "quantity,payment_method,description\r\n"
            ",news.harbour.example/tides,http,,2026-11-21T16:05:00,,,,,,,,,\r\n"
            ",www.garden.example,https,,2026-01-02T00:00:00,,anna,tulip7,3/14/26 10:00:00 AM,"
            "Rose shears,24.50,2,Card,For the climbers\r\n"
            ",www.garden.example,https,,2026-01-02T00:00:00,,anna,tulip7,3/15/26,'=Gloves,8,,,\r\n"
            "May,www.mill.example,none,,,yesterday,,,,,,,,\r\n");
}

TEST_F(ListTest, OfNothingIsStillWellFormed) {
  given("Data/nodes.dat", "");
  EXPECT_EQ(run({"list", "--no-archives", "--format", "json"}), 0);
  EXPECT_EQ(output, "[]\n");
  EXPECT_EQ(run({"list", "--no-archives", "--format", "csv"}), 0);
  EXPECT_EQ(output, "archive,address,scheme,flag,visited,stamp\r\n");
}

TEST_F(ListTest, ShowsAFlagThatStandsForNoScheme) {
  given("Data/nodes.dat", siteRecord("a.b.c", '\xE9'));
  EXPECT_EQ(run({"list", "--no-archives"}), 0);
  EXPECT_EQ(output,
            "VISITED               SCHEME  ADDRESS\n"
            "2026-07-01 08:00:00   ?       a.b.c\n");
  EXPECT_EQ(run({"list", "--no-archives", "--format", "csv"}), 0);
  EXPECT_EQ(output,
            "archive,address,scheme,flag,visited,stamp\r\n"
            ",a.b.c,,\u00E9,2026-07-01T08:00:00,\r\n");
}

TEST_F(ListTest, ReadsAMissingFileAsNoRecords) {
  EXPECT_EQ(run({"list", "--data", "Quorrix/Archives/May", "--with", "notes"}), 0);
  EXPECT_EQ(output,
            "VISITED               SCHEME  ADDRESS\n"
            "yesterday             none    www.mill.example\n");
}

TEST_F(ListTest, NamesAFolderThatIsMissing) {
  EXPECT_EQ(run({"list", "--data", "No\x1Bwhere"}), 2);
  EXPECT_EQ(output, "");
  EXPECT_EQ(error, "quorrix-data: No\\x1Bwhere: There is no such folder.\n");
}

class SearchTest : public testing::Test, protected ToolStage {
 protected:
  SearchTest() {
    given("Data/nodes.dat", siteRecord("news.harbour.example", 'N', "11/21/26 4:05:00 PM~") +
                                siteRecord("www.Harbour.example", 'N', "1/2/26 9:00:00 AM~"));
  }

  std::string addresses(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "search");
    arguments.insert(arguments.end(), {"--format", "csv"});
    status = run(arguments);
    std::string found;
    for (std::size_t at = output.find('\n'); at != std::string::npos && at + 1 < output.size();
         at = output.find('\n', at + 1)) {
      const auto begin = output.find(',', at) + 1;
      found += output.substr(begin, output.find(',', begin) - begin) + " ";
    }
    return found;
  }

  int status = -1;
};

TEST_F(SearchTest, IgnoresLetterCase) {
  EXPECT_EQ(addresses({"HARBOUR"}), "news.harbour.example www.Harbour.example ");
  EXPECT_EQ(status, 0);
  EXPECT_EQ(addresses({"mill"}), "");
  EXPECT_EQ(status, 1);
}

TEST_F(SearchTest, FindsVisitsOnADayAndLater) {
  EXPECT_EQ(addresses({"--after", "11/21/26"}), "news.harbour.example ");
  EXPECT_EQ(addresses({"--after", "11/22/2026"}), "");
  EXPECT_EQ(addresses({"harbour", "--after", "1/2/2026"}),
            "news.harbour.example www.Harbour.example ");
  EXPECT_EQ(addresses({"news", "--after", "1/2/26"}), "news.harbour.example ");
}

TEST_F(SearchTest, FindsAnEmptyTextOnlyWithADate) {
  EXPECT_EQ(addresses({""}), "");
  EXPECT_EQ(status, 1);
  EXPECT_EQ(addresses({"", "--after", "11/1/26"}), "news.harbour.example ");
}

TEST_F(SearchTest, RefusesADateThatIsNone) {
  EXPECT_EQ(run({"search", "--after", "13/45/99"}), 2);
  EXPECT_EQ(output, "");
  EXPECT_EQ(error,
            "quorrix-data: 13/45/99: This is not a date. Write it as 11/21/2026, month first.\n");
}

TEST_F(SearchTest, EndsAtARecordWhoseDateCannotBeRead) {
  given("Data/nodes.dat", siteRecord("a.b.c") + siteRecord("d.e.f", 'N', "yesterday~"));
  EXPECT_EQ(run({"search", "zzz"}), 2);
  const std::string file = (Path("Quorrix/Data") / "nodes.dat").string();
  EXPECT_EQ(error, "quorrix-data: " + file +
                       ": record 2: The date cannot be read, so the search ends here.\n");
}

TEST_F(SearchTest, NeedsATextOrADate) {
  EXPECT_EQ(run({"search"}), 2);
  EXPECT_EQ(error,
            "quorrix-data: search needs TEXT, --after or both.\n"
            "Try 'quorrix-data --help' for more information.\n");
}

}  // namespace
}  // namespace quorrix
