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

class ListOfDetailsTest : public testing::Test, protected ToolStage {
 protected:
  ListOfDetailsTest() {
    given("Data/nodes.dat",
          siteRecord("www.garden.example/roses") + siteRecord("www.mill.example"));
    given("Data/notes.dat", test::notesRecord("www.mill.example", "Closed on Mondays.") +
                                test::notesRecord("www.garden.example", "Prune in March.") +
                                test::notesRecord("www.garden.example", "Another note."));
    given("Data/info.dat", test::loginRecord("news.harbour.example", "anna", "tulip7"));
    given("Archives/May/nodes.dat", siteRecord("www.garden.example"));
  }
};

// Quorrix keeps no more, so the file is damaged or none of its own.
TEST_F(ListOfDetailsTest, HasAtMost32767RecordsOfAFile) {
  std::string logins;
  for (int number = 1; number <= 32'767; ++number) {
    logins += test::loginRecord("www.mill.example/" + std::to_string(number), "anna", "");
  }
  given("Data/info.dat", logins);
  EXPECT_EQ(run({"list", "--with", "logins", "--no-archives"}), 0);
  EXPECT_EQ(error, "");
  given("Data/info.dat", logins + test::loginRecord("www.mill.example", "anna", ""));
  EXPECT_EQ(run({"list", "--with", "logins", "--no-archives"}), 2);
  EXPECT_EQ(error, "quorrix-data: " + (Path("Quorrix/Data") / "info.dat").string() +
                       ": The file has more than 32,767 records.\n");
}

TEST_F(ListOfDetailsTest, HasAddressesWithoutARecordBelowTheSitesOfTheirFolder) {
  EXPECT_EQ(run({"list", "--with", "notes,logins"}), 0);
  EXPECT_EQ(output,
            "VISITED               SCHEME  ARCHIVE  ADDRESS\n"
            "2026-07-01 08:00:00   http             www.garden.example/roses\n"
            "2026-07-01 08:00:00   http             www.mill.example\n"
            "    notes: Closed on Mondays.\n"
            "                                       news.harbour.example\n"
            "    user ID: anna\n"
            "                                       www.garden.example\n"
            "    notes: Prune in March.\n"
            "2026-07-01 08:00:00   http    May      www.garden.example\n");
}

TEST_F(ListOfDetailsTest, HasNoSchemeAndNoTimeOfAnAddressWithoutARecord) {
  EXPECT_EQ(run({"list", "--no-archives", "--with", "logins", "--format", "json"}), 0);
  EXPECT_EQ(
      output,
      "[\n"
      R"({"address":"www.garden.example/roses","scheme":"http","visited":"2026-07-01T08:00:00","archive":null,"userId":null},)"
      "\n"
      R"({"address":"www.mill.example","scheme":"http","visited":"2026-07-01T08:00:00","archive":null,"userId":null},)"
      "\n"
      R"({"address":"news.harbour.example","scheme":null,"visited":null,"archive":null,"userId":"anna"})"
      "\n]\n");
  EXPECT_EQ(run({"list", "--no-archives", "--with", "logins", "--format", "csv"}), 0);
  EXPECT_EQ(output,
            "archive,address,scheme,flag,visited,stamp,user_id\r\n"
            ",www.garden.example/roses,http,,2026-07-01T08:00:00,,\r\n"
            ",www.mill.example,http,,2026-07-01T08:00:00,,\r\n"
            ",news.harbour.example,,,,,anna\r\n");
}

TEST_F(ListOfDetailsTest, HasOnlyTheKindsThatAreAskedFor) {
  EXPECT_EQ(run({"list", "--no-archives", "--with", "purchases"}), 0);
  EXPECT_EQ(output,
            "VISITED               SCHEME  ADDRESS\n"
            "2026-07-01 08:00:00   http    www.garden.example/roses\n"
            "2026-07-01 08:00:00   http    www.mill.example\n");
}

TEST_F(ListOfDetailsTest, IsSearchedByTextButNotByDate) {
  EXPECT_EQ(run({"search", "HARBOUR", "--no-archives", "--with", "logins,notes"}), 0);
  EXPECT_EQ(output,
            "VISITED               SCHEME  ADDRESS\n"
            "                              news.harbour.example\n"
            "    user ID: anna\n");
  EXPECT_EQ(run({"search", "HARBOUR", "--no-archives"}), 1);
  EXPECT_EQ(run({"search", "harbour", "--no-archives", "--with", "logins", "--after", "1/1/00"}),
            1);
  EXPECT_EQ(run({"search", "", "--no-archives", "--with", "logins,notes"}), 1);
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

TEST_F(ListTest, ReportsOutputThatCannotBeWritten) {
  given("Data/nodes.dat", siteRecord("www.garden.example"));
  std::string told;
  const auto runWith = [&](const std::function<void(std::string_view)>& write) {
    told.clear();
    DataTool tool({.files = files,
                   .codePage = test::westernCodePage(),
                   .defaultFolder = "Quorrix/Data",
                   .write = write,
                   .writeError = [&](std::string_view text) { told += text; },
                   .terminalWidth = {}});
    return tool.run({"list"});
  };
  EXPECT_EQ(runWith([](std::string_view) { throw Failure(failure::kDiskFull); }), 2);
  EXPECT_EQ(told, "quorrix-data: Disk full.\n");
  EXPECT_EQ(runWith([](std::string_view) { throw std::bad_alloc(); }), 2);
  EXPECT_EQ(told, "quorrix-data: Out of memory.\n");
}

TEST_F(SearchTest, RefusesATextThatIsNotADate) {
  EXPECT_EQ(run({"search", "--after", "13/45/99"}), 2);
  EXPECT_EQ(output, "");
  EXPECT_EQ(error,
            "quorrix-data: 13/45/99: This is not a date. Write it as 11/21/2026, month first.\n");
}

TEST_F(SearchTest, EndsAtARecordWhoseDateCannotBeRead) {
  given("Data/nodes.dat",
        siteRecord("a.b.c") + siteRecord("d.e.f", 'N', "yesterday~") + siteRecord("a.b.d"));
  EXPECT_EQ(run({"search", "a", "--format", "json"}), 2);
  EXPECT_EQ(output,
            "[\n"
            R"({"address":"a.b.c","scheme":"http","visited":"2026-07-01T08:00:00","archive":null})"
            "\n]\n")
      << "what was found before";
  const std::string file = (Path("Quorrix/Data") / "nodes.dat").string();
  EXPECT_EQ(error, "quorrix-data: " + file +
                       ": record 2: The date cannot be read, so the search of this folder ends "
                       "here.\n");
}

TEST_F(SearchTest, ContinuesInTheNextArchiveAfterADateThatCannotBeRead) {
  given("Data/nodes.dat", siteRecord("a.b.c"));
  given("Archives/1/nodes.dat", siteRecord("a.b.1", 'N', "yesterday~"));
  given("Archives/2/nodes.dat", siteRecord("a.b.2"));
  for (const char* name : {"notes.dat", "info.dat", "purchases.dat"}) {
    given("Archives/1/" + std::string(name), "");
    given("Archives/2/" + std::string(name), "");
  }
  EXPECT_EQ(addresses({"a.b"}), "a.b.c a.b.2 ");
  EXPECT_EQ(status, 2);
  EXPECT_TRUE(
      error.ends_with(": record 1: The date cannot be read, so the search of this folder "
                      "ends here.\n"))
      << error;
}

TEST_F(SearchTest, NeedsATextOrADate) {
  EXPECT_EQ(run({"search"}), 2);
  EXPECT_EQ(error,
            "quorrix-data: search needs TEXT, --after or both.\n"
            "Try 'quorrix-data --help' for more information.\n");
}

}  // namespace
}  // namespace quorrix
