// What export writes, compared with files written by hand.
#include <gtest/gtest.h>

#include "data_tool/tool_stage.h"

namespace quorrix {
namespace {

using test::siteRecord;
using test::ToolStage;

class ExportTest : public testing::Test, protected ToolStage {
 protected:
  ExportTest() {
    given("Data/nodes.dat",
          siteRecord("news.harbour.example/tides?a=1&b=2", 'N', "11/21/26 4:05:00 PM~") +
              siteRecord("www.garden.example", 'S', "yesterday~") + std::string(322, ' ') +
              siteRecord("news.harbour.example", 'F', "1/2/26 12:00:00 AM~"));
    given("Data/notes.dat", test::notesRecord("news.harbour.example", "<b>High\r\nand low</b>"));
    given("Data/info.dat", test::loginRecord("www.garden.example", "anna", "tulip7"));
    given("Data/purchases.dat", test::purchaseRecord("shop.garden.example"));
    given("Archives/2025/May/nodes.dat", siteRecord("www.mill.example", '\xE9'));
  }
};

TEST_F(ExportTest, WritesEveryRecordAsJson) {
  EXPECT_EQ(run({"export", "--format", "json"}), 0);
  EXPECT_EQ(output, R"({
"sites": [
{"address":"news.harbour.example/tides?a=1&b=2","scheme":"http","visited":"2026-11-21T16:05:00"},
{"address":"www.garden.example","scheme":"https","visited":null,"stamp":"yesterday"},
{"address":"news.harbour.example","scheme":"ftp","visited":"2026-01-02T00:00:00"}
],
"notes": [
{"address":"news.harbour.example","text":"<b>High\r\nand low</b>"}
],
"logins": [
{"address":"www.garden.example","userId":"anna"}
],
"purchases": [
{"address":"shop.garden.example","date":"3/14/26 10:00:00 AM","item":"Rose shears","price":"24.50","quantity":"2","paymentMethod":"Card","description":"For the climbers"}
],
"archives": [
{
"name": "2025/May",
"sites": [
{"address":"www.mill.example","scheme":null,"flag":"é","visited":"2026-07-01T08:00:00"}
],
"notes": [],
"logins": [],
"purchases": []
}
]
}
)");
}

// 0x9D is a byte that the code page does not assign.
TEST_F(ExportTest, EscapesControlCharacters) {
  given("Data/notes.dat", test::notesRecord("www.a.example", "a\x1B[31m \x7F \x9D \xE9"));
  EXPECT_EQ(run({"export", "--format", "json"}), 0);
  EXPECT_NE(output.find(R"("text":"a\u001b[31m \u007f \u009d é")"), std::string::npos);
  EXPECT_EQ(run({"export", "--format", "csv"}), 0);
  EXPECT_NE(output.find(R"(a\x1B[31m \x7F \x9D é)"), std::string::npos);
}

TEST_F(ExportTest, IncludesPasswordsOnlyIfAsked) {
  for (const char* format : {"json", "csv", "html", "netscape-bookmarks"}) {
    EXPECT_EQ(run({"export", "--format", format}), 0);
    EXPECT_EQ(output.find("tulip7"), std::string::npos) << format;
  }
  run({"export", "--format", "json", "--show-passwords"});
  EXPECT_NE(output.find(R"({"address":"www.garden.example","userId":"anna","password":"tulip7"})"),
            std::string::npos);
}

// Sites that were archived in between would be missing in both places.
TEST_F(ExportTest, FailsIfTheArchivesChange) {
  bool isReading = false;
  files.onEveryCall([&] {
    if (isReading || files.calls().back() != test::FileCall::ReadAt) return;
    isReading = true;
    given("Archives/June/nodes.dat", siteRecord("www.mill.example"));
  });
  EXPECT_EQ(run({"export", "--format", "json"}), 2);
  EXPECT_EQ(error, "quorrix-data: " + Path("Quorrix/Data").string() +
                       ": The archives changed. Try again.\n");
}

TEST_F(ExportTest, OfNothingIsStillJson) {
  given("Empty/nodes.dat", "");
  EXPECT_EQ(run({"export", "--format", "json", "--data", "Quorrix/Empty", "--no-archives"}), 0);
  EXPECT_EQ(output,
            "{\n\"sites\": [],\n\"notes\": [],\n\"logins\": [],\n\"purchases\": [],\n"
            "\"archives\": []\n}\n");
}

TEST_F(ExportTest, WritesALineForEachRecordAsCsv) {
  EXPECT_EQ(run({"export", "--format", "csv", "--show-passwords"}), 0);
  EXPECT_EQ(output,
            "kind,archive,address,scheme,flag,visited,stamp,notes,user_id,password,purchase_date,"
            "item,price,quantity,payment_method,description\r\n"
            "site,,news.harbour.example/tides?a=1&b=2,http,,2026-11-21T16:05:00,,,,,,,,,,\r\n"
            "site,,www.garden.example,https,,,yesterday,,,,,,,,,\r\n"
            "site,,news.harbour.example,ftp,,2026-01-02T00:00:00,,,,,,,,,,\r\n"
            "notes,,news.harbour.example,,,,,\"<b>High\r\nand low</b>\",,,,,,,,\r\n"
            "login,,www.garden.example,,,,,,anna,tulip7,,,,,,\r\n"
            "purchase,,shop.garden.example,,,,,,,,3/14/26 10:00:00 AM,Rose shears,24.50,2,Card,"
            "For the climbers\r\n"
            "site,2025/May,www.mill.example,,\u00E9,2026-07-01T08:00:00,,,,,,,,,,\r\n");
}

// The times depend on the time zone, so the sites have none.
TEST_F(ExportTest, WritesBookmarksWithAFolderForEachHost) {
  given("Data/nodes.dat", siteRecord("news.harbour.example/tides?a=1&b=2", 'N', "~") +
                              siteRecord("www.garden.example", 'S', "~") +
                              siteRecord("news.harbour.example", 'F', "~"));
  given("Archives/2025/May/nodes.dat", siteRecord("www.mill.example/<>", 'U', "~"));
  EXPECT_EQ(run({"export", "--format", "netscape-bookmarks"}), 0);
  EXPECT_EQ(output, R"(<!DOCTYPE NETSCAPE-Bookmark-file-1>
<META HTTP-EQUIV="Content-Type" CONTENT="text/html; charset=UTF-8">
<TITLE>Bookmarks</TITLE>
<H1>Bookmarks</H1>
<DL><p>
    <DT><H3>Quorrix</H3>
    <DL><p>
        <DT><H3>news.harbour.example</H3>
        <DL><p>
            <DT><A HREF="ftp://news.harbour.example">news.harbour.example</A>
            <DT><A HREF="http://news.harbour.example/tides?a=1&amp;b=2">news.harbour.example/tides?a=1&amp;b=2</A>
        </DL><p>
        <DT><H3>www.garden.example</H3>
        <DL><p>
            <DT><A HREF="https://www.garden.example">www.garden.example</A>
        </DL><p>
        <DT><H3>Archive 2025/May</H3>
        <DL><p>
            <DT><H3>www.mill.example</H3>
            <DL><p>
                <DT><A HREF="http://www.mill.example/&lt;&gt;">www.mill.example/&lt;&gt;</A>
            </DL><p>
        </DL><p>
    </DL><p>
</DL><p>
)");
}

class PageTest : public ExportTest {
 protected:
  // What is between the search box and the end of the page.
  std::string page(std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"export", "--format", "html"});
    EXPECT_EQ(run(options), 0);
    const auto begin = output.find("</form>\n") + 8;
    return output.substr(begin, output.find("</main>") - begin);
  }
};

TEST_F(PageTest, IsATreeWithEverythingThatIsKept) {
  EXPECT_EQ(page(), R"(<ul>
<li><details>
<summary><bdi>news.harbour.example</bdi> <span>(2)</span></summary>
<div class="site"><a href="ftp://news.harbour.example">news.harbour.example</a> ftp <time>2026-01-02 00:00:00</time>
<dl>
<dt>Notes</dt><dd dir="auto">&lt;b&gt;High
and low&lt;/b&gt;</dd>
</dl></div>
<ul>
<li class="site"><a href="http://news.harbour.example/tides?a=1&amp;b=2">tides?a=1&amp;b=2</a> http <time>2026-11-21 16:05:00</time></li>
</ul>
</details></li>
<li class="site"><a href="https://www.garden.example">www.garden.example</a> https <bdi>yesterday</bdi>
<dl>
<dt>User ID</dt><dd dir="auto">anna</dd>
</dl></li>
<li class="site"><bdi>shop.garden.example</bdi>
<dl>
<dt>Purchase</dt><dd dir="auto">Rose shears</dd>
<dt>Date</dt><dd dir="auto">3/14/26 10:00:00 AM</dd>
<dt>Price</dt><dd dir="auto">24.50</dd>
<dt>Quantity</dt><dd dir="auto">2</dd>
<dt>Payment Method</dt><dd dir="auto">Card</dd>
<dt>Description</dt><dd dir="auto">For the climbers</dd>
</dl></li>
</ul>
<h2>Archive 2025/May</h2>
<ul>
<li class="site"><a href="http://www.mill.example">www.mill.example</a> ? <time>2026-07-01 08:00:00</time></li>
</ul>
)");
}

TEST_F(PageTest, OnlyGroupsByLevelsWithoutARecord) {
  given("Data/nodes.dat",
        siteRecord("www.garden.example/beds/roses/climbers", 'S') +
            siteRecord("www.garden.example/beds/tulips", 'S') +
            siteRecord("www.garden.example/beds/tulips", 'N', "1/2/26 12:00:00 AM~"));
  given("Data/notes.dat", test::notesRecord("www.garden.example/beds", "Water them.") +
                              test::notesRecord("www.garden.example/beds", "Weed them."));
  given("Data/info.dat", "");
  given("Data/purchases.dat", "");
  EXPECT_EQ(page({"--no-archives"}), R"(<ul>
<li><details>
<summary><bdi>www.garden.example</bdi> <span>(3)</span></summary>
<ul>
<li><details>
<summary><bdi>beds</bdi> <span>(3)</span></summary>
<div class="site"><bdi>www.garden.example/beds</bdi>
<dl>
<dt>Notes</dt><dd dir="auto">Water them.</dd>
<dt>Notes</dt><dd dir="auto">Weed them.</dd>
</dl></div>
<ul>
<li><details>
<summary><bdi>roses</bdi> <span>(1)</span></summary>
<ul>
<li class="site"><a href="https://www.garden.example/beds/roses/climbers">climbers</a> https <time>2026-07-01 08:00:00</time></li>
</ul>
</details></li>
<li class="site"><a href="https://www.garden.example/beds/tulips">tulips</a> https <time>2026-07-01 08:00:00</time><br>
<a href="http://www.garden.example/beds/tulips">tulips</a> http <time>2026-01-02 00:00:00</time></li>
</ul>
</details></li>
</ul>
</details></li>
</ul>
)");
}

TEST_F(PageTest, ShowsPasswordsAndASecondUserID) {
  given("Data/info.dat", test::loginRecord("www.garden.example", "anna", "tulip7") +
                             test::loginRecord("www.garden.example", "otto", "lilac8"));
  const std::string shown = page({"--show-passwords", "--no-archives"});
  EXPECT_NE(shown.find(R"(<dl>
<dt>User ID</dt><dd dir="auto">anna</dd>
<dt>Password</dt><dd dir="auto">tulip7</dd>
<dt>User ID</dt><dd dir="auto">otto</dd>
<dt>Password</dt><dd dir="auto">lilac8</dd>
</dl>)"),
            std::string::npos)
      << shown;
}

// The tree of Quorrix has at most 50 levels.
TEST_F(PageTest, ListsAddressesThatTheTreeCannotHold) {
  std::string deep = "a.b";
  for (int level = 2; level <= 51; ++level) deep += "/c";
  given("Data/nodes.dat", siteRecord(deep) + siteRecord(deep, 'S'));
  given("Data/notes.dat", test::notesRecord(deep, "Deep.") + test::notesRecord(deep + "/d", "No."));
  given("Data/info.dat", "");
  given("Data/purchases.dat", "");
  EXPECT_EQ(page({"--no-archives"}),
            "<ul>\n<li class=\"site\"><a href=\"http://" + deep + "\">" + deep +
                "</a> http <time>2026-07-01 08:00:00</time>\n"
                "<dl>\n<dt>Notes</dt><dd dir=\"auto\">Deep.</dd>\n</dl></li>\n"
                "<li class=\"site\"><a href=\"https://" +
                deep + "\">" + deep +
                "</a> https <time>2026-07-01 08:00:00</time></li>\n"
                "<li class=\"site\"><bdi>" +
                deep +
                "/d</bdi>\n"
                "<dl>\n<dt>Notes</dt><dd dir=\"auto\">No.</dd>\n</dl></li>\n</ul>\n");
}

TEST_F(PageTest, OfNothingSaysSo) {
  given("Empty/nodes.dat", "");
  EXPECT_EQ(page({"--data", "Quorrix/Empty", "--no-archives"}),
            "<p class=\"faint\">No sites are recorded here.</p>\n");
}

}  // namespace
}  // namespace quorrix
