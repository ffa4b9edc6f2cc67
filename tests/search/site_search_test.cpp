#include "search/site_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "search/site_matcher.h"
#include "support/code_page_samples.h"
#include "support/code_pages.h"
#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failureNumberOf;
using test::FileCall;
using test::kFileFailures;

using Addresses = std::vector<std::string>;

// A record as stored in the file: 300 bytes of address, the flag, 21 bytes of stamp.
std::string record(std::string address, std::string stamp = "1/2/25 3:04:05 AM~") {
  address.resize(300, ' ');
  stamp.resize(21, ' ');
  return address + "N" + stamp;
}

class SiteSearchTest : public testing::Test {
 protected:
  SiteSearchTest() {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
  }

  void givenTheFile(std::string bytes) {
    memory_.givenAFile(paths_.currentNodesFile, std::move(bytes));
  }

  Addresses search(const SearchCriteria& criteria) {
    SearchCriteria asEntered = criteria;  // the tests' texts are single-byte
    asEntered.searchText = test::westernCodePage().toUtf8(criteria.searchText);
    return searchSiteFile(files_, paths_, test::westernCodePage(), asEntered);
  }

  Addresses byText(const std::string& text) { return search({UserSearchType::Url, text, ""}); }
  Addresses byDate(const std::string& date) { return search({UserSearchType::Date, "", date}); }
  Addresses byBoth(const std::string& text, const std::string& date) {
    return search({UserSearchType::Both, text, date});
  }

  int failureByText(const std::string& text) {
    return failureNumberOf([&] { return byText(text); });
  }
  int failureByDate(const std::string& date) {
    return failureNumberOf([&] { return byDate(date); });
  }
  int failureByBoth(const std::string& text, const std::string& date) {
    return failureNumberOf([&] { return byBoth(text, date); });
  }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  WorkingPaths paths_;
};

TEST_F(SiteSearchTest, FindsTheAddressesThatHoldTheText) {
  givenTheFile(record("news.harbour.example/tides") + record("www.mill.example") +
               record("www.harbour.example"));
  EXPECT_EQ(byText("harbour"), (Addresses{"news.harbour.example/tides", "www.harbour.example"}));
  EXPECT_EQ(byText("www."), (Addresses{"www.mill.example", "www.harbour.example"}));
  EXPECT_EQ(byText("/tides"), Addresses{"news.harbour.example/tides"});
  EXPECT_EQ(byText("bakery"), Addresses{});
}

TEST_F(SiteSearchTest, FindsSmallLettersByCapitals) {
  givenTheFile(record("news.harbour.example") + record("NEWS.MILL.EXAMPLE"));
  EXPECT_EQ(byText("HARBOUR"), Addresses{"news.harbour.example"});
  EXPECT_EQ(byText("mill"), Addresses{"NEWS.MILL.EXAMPLE"});
  EXPECT_EQ(byText("News"), (Addresses{"news.harbour.example", "NEWS.MILL.EXAMPLE"}));
}

TEST_F(SiteSearchTest, FindsLettersWithMarksInEitherCase) {
  givenTheFile(record("caf\xE9.example/\x8Cuvre"));
  EXPECT_EQ(byText("CAF\xC9"), Addresses{"caf\xE9.example/\x8Cuvre"});
  EXPECT_EQ(byText("\x9CUVRE"), Addresses{"caf\xE9.example/\x8Cuvre"});
  EXPECT_EQ(byText("cafe"), Addresses{});
}

TEST_F(SiteSearchTest, KeepsTheOrderOfTheFileAndDuplicates) {
  givenTheFile(record("z.b.c") + record("a.b.c") + record("z.b.c") + record("m.b.c"));
  EXPECT_EQ(byText("b"), (Addresses{"z.b.c", "a.b.c", "z.b.c", "m.b.c"}));
  EXPECT_EQ(byDate("1/2/25"), (Addresses{"z.b.c", "a.b.c", "z.b.c", "m.b.c"}));
}

TEST_F(SiteSearchTest, FindsNoAddressByAnEmptyText) {
  givenTheFile(record("a.b.c") + record("d.e.f"));
  EXPECT_EQ(byText(""), Addresses{});
}

TEST_F(SiteSearchTest, OpensTheFileButReadsNothingOfItForAnEmptyText) {
  givenTheFile(record("a.b.c", "no date"));
  EXPECT_EQ(byText(""), Addresses{});
  EXPECT_EQ(files_.calls(), std::vector<FileCall>{FileCall::OpenForReading});
  files_.reset();
  files_.failAtCall(FileCall::OpenForReading, 1, 67);
  EXPECT_EQ(failureByText(""), 67);
}

// Such a character is recorded as "?" in an address.
TEST_F(SiteSearchTest, FindsNothingByACharacterThatNoAddressCanHold) {
  givenTheFile(record("a.b.c/?q=1") + record("a.b.c/?\xC4\x81"));
  for (const char* text : {"\u0101", "a\u0416", "\U0001F511", "?\u0101"}) {
    for (const auto type : {UserSearchType::Url, UserSearchType::Both}) {
      const SearchCriteria criteria{type, text, "1/1/25"};
      EXPECT_EQ(searchSiteFile(files_, paths_, test::westernCodePage(), criteria), Addresses{})
          << text;
    }
    const SearchCriteria byDate{UserSearchType::Date, text, "1/1/25"};
    EXPECT_EQ(searchSiteFile(files_, paths_, test::westernCodePage(), byDate).size(), 2U);
  }
  EXPECT_EQ(byText("?").size(), 2U);
}

TEST_F(SiteSearchTest, ReadsDatesWhateverTheTextHolds) {
  givenTheFile(record("a.b.c", "no date"));
  const SearchCriteria criteria{UserSearchType::Url, "\u0101", ""};
  EXPECT_EQ(failureNumberOf(
                [&] { return searchSiteFile(files_, paths_, test::westernCodePage(), criteria); }),
            13);
}

TEST_F(SiteSearchTest, SeeksABlankOnlyWhereAnAddressHasOne) {
  givenTheFile(record("a.b.c") + record("a.b.c/x y\0"s));
  EXPECT_EQ(byText(" "), Addresses{"a.b.c/x y"});
}

TEST_F(SiteSearchTest, SeeksInTheAddressAlone) {
  givenTheFile(record("a.b.c other") + record("d.e.f\0other"s));
  EXPECT_EQ(byText("other"), Addresses{});
  EXPECT_EQ(byText("N"), Addresses{});
  EXPECT_EQ(byText("25"), Addresses{});
  EXPECT_EQ(byText("c"), Addresses{"a.b.c"});
  EXPECT_EQ(byText("f"), Addresses{"d.e.f"});
}

TEST_F(SiteSearchTest, SeeksInAnAddressOf300Characters) {
  const std::string address = "one.two.three/" + std::string(283, 'x') + "end";
  givenTheFile(record(address));
  EXPECT_EQ(byText("XEND"), Addresses{address});
  EXPECT_EQ(byText("endN"), Addresses{});
  EXPECT_EQ(byText(address), Addresses{address});
  EXPECT_EQ(byText(address + "x"), Addresses{});
}

TEST_F(SiteSearchTest, PassesOverRecordsWithoutAnAddress) {
  givenTheFile(std::string(322, ' ') + record("a.b.c") + record(" a.b.c") + record("\0a.b.c"s) +
               std::string(322, '\0') + record("d.b.f"));
  EXPECT_EQ(byText("b"), (Addresses{"a.b.c", "d.b.f"}));
  EXPECT_EQ(byDate("1/1/25"), (Addresses{"a.b.c", "d.b.f"}));
  EXPECT_EQ(byBoth("", "1/1/25"), (Addresses{"a.b.c", "d.b.f"}));
}

TEST_F(SiteSearchTest, FindsVisitsOfTheDaySoughtAndLaterOnes) {
  givenTheFile(record("day.be.fore", "11/15/25 11:59:59 PM~") +
               record("the.very.day", "11/16/25 12:00:00 AM~") +
               record("day.be.hind", "11/17/25 12:00:00 AM~"));
  EXPECT_EQ(byDate("11/16/25"), (Addresses{"the.very.day", "day.be.hind"}));
  EXPECT_EQ(byDate("11/15/25"), (Addresses{"day.be.fore", "the.very.day", "day.be.hind"}));
  EXPECT_EQ(byDate("11/18/25"), Addresses{});
}

TEST_F(SiteSearchTest, ComparesDaysByTheCalendarNotByTheirText) {
  givenTheFile(record("in.february", "2/1/25 1:00:00 AM~") +
               record("in.december", "12/31/24 1:00:00 AM~") +
               record("in.october", "10/9/25 1:00:00 AM~"));
  EXPECT_EQ(byDate("1/1/25"), (Addresses{"in.february", "in.october"}));
  EXPECT_EQ(byDate("3/1/25"), Addresses{"in.october"});
  EXPECT_EQ(byDate("10/10/24"), (Addresses{"in.february", "in.december", "in.october"}));
}

TEST_F(SiteSearchTest, TakesOnlyTheYear99ForOneOfThe1900s) {
  givenTheFile(record("in.nineteen.ninety-nine", "12/31/99 1:00:00 AM~") +
               record("in.two.thousand", "1/1/00 1:00:00 AM~") +
               record("in.twenty.ninety-eight", "1/1/98 1:00:00 AM~"));
  EXPECT_EQ(byDate("1/1/00"), (Addresses{"in.two.thousand", "in.twenty.ninety-eight"}));
  EXPECT_EQ(byDate("1/1/01"), Addresses{"in.twenty.ninety-eight"});
  EXPECT_EQ(byDate("12/31/99").size(), 3U);
}

TEST_F(SiteSearchTest, TakesASearchDateWithAYearOfFourDigits) {
  givenTheFile(record("a.b.c", "12/31/99 1:00:00 AM~") + record("d.e.f", "1/1/00 1:00:00 AM~"));
  EXPECT_EQ(byDate("12/31/1999"), (Addresses{"a.b.c", "d.e.f"}));
  EXPECT_EQ(byDate("1/1/2000"), Addresses{"d.e.f"});
}

TEST_F(SiteSearchTest, IgnoresTheTextByDateAndTheDateByText) {
  givenTheFile(record("a.b.c"));
  EXPECT_EQ(search({UserSearchType::Date, "bakery", "1/2/25"}), Addresses{"a.b.c"});
  EXPECT_EQ(search({UserSearchType::Url, "b", "1/3/25"}), Addresses{"a.b.c"});
  EXPECT_EQ(search({UserSearchType::Url, "b", "13/45/99"}), Addresses{"a.b.c"});
}

TEST_F(SiteSearchTest, WantsTextAndDateByBoth) {
  givenTheFile(record("early.harbour.example", "1/1/25 1:00:00 AM~") +
               record("late.harbour.example", "1/2/25 1:00:00 AM~") +
               record("late.mill.example", "1/2/25 1:00:00 AM~"));
  EXPECT_EQ(byBoth("HARBOUR", "1/2/25"), Addresses{"late.harbour.example"});
  EXPECT_EQ(byBoth("harbour", "1/1/25"),
            (Addresses{"early.harbour.example", "late.harbour.example"}));
  EXPECT_EQ(byBoth("mill", "1/3/25"), Addresses{});
  EXPECT_EQ(byBoth("bakery", "1/1/25"), Addresses{});
}

TEST_F(SiteSearchTest, SearchesByDateAloneByBothWithAnEmptyText) {
  givenTheFile(record("a.b.c", "1/1/25 1:00:00 AM~") + record("d.e.f", "1/2/25 1:00:00 AM~"));
  EXPECT_EQ(byBoth("", "1/2/25"), Addresses{"d.e.f"});
}

TEST_F(SiteSearchTest, FailsForASearchDateThatIsNone) {
  givenTheFile(record("a.b.c"));
  for (const char* const date : {"13/45/99", "2/30/24", "", "//", "1/2/", "yesterday"}) {
    EXPECT_EQ(failureByDate(date), 13) << date;
    EXPECT_EQ(failureByBoth("a", date), 13) << date;
    EXPECT_EQ(failureByBoth("", date), 13) << date;
    EXPECT_EQ(failureByBoth("bakery", date), 13) << date;
  }
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(SiteSearchTest, DoesNotReadTheSearchDateWhereNoRecordHasAnAddress) {
  for (const std::string& bytes : {""s, record(""), std::string(644, '\0')}) {
    givenTheFile(bytes);
    EXPECT_EQ(byDate("13/45/99"), Addresses{});
    EXPECT_EQ(byBoth("a", "13/45/99"), Addresses{});
  }
}

TEST_F(SiteSearchTest, FailsForAVisitDateThatIsNone) {
  for (const std::string& stamp :
       {""s, "~"s, " ~"s, " 1/2/25 3:04:05 AM~"s, "1/2/25~"s, "1/2/25 3:04:05 AM"s,
        "1/2/25~3:04:05 AM "s, "13/45/99 3:04:05 AM~"s, "2/29/25 3:04:05 AM~"s,
        "1-2-25 3:04:05 AM~"s, "today 3:04:05 AM~"s, std::string(21, '\0'), "1/2/25\0 3:04:05 AM~"s,
        "1/2/25 3:04:05 AM 1234"s}) {
    givenTheFile(record("a.b.c") + record("d.e.f", stamp) + record("g.h.i"));
    EXPECT_EQ(failureByDate("1/1/25"), 13) << stamp;
    EXPECT_EQ(failureByBoth("d", "1/1/25"), 13) << stamp;
    EXPECT_EQ(failureByBoth("a", "1/1/25"), 13) << stamp;
    EXPECT_EQ(failureByText("d"), 13) << stamp;
    EXPECT_EQ(failureByText("a"), 13) << stamp;
  }
}

TEST_F(SiteSearchTest, ReadsNoMoreOfAStampThanItsDay) {
  for (const std::string& stamp :
       {"1/2/25 ~"s, "1/2/25 25:61:61 XM~"s, "1/2/25 \0~"s, "1/2/2025 3:04~~~"s,
        "01/02/25 3:04:05 AM ~"s, "1/2/25 3:04:05 AM~ 9/"s,
        "1/2/25 " + std::string(13, 'x') + "~"}) {
    givenTheFile(record("a.b.c", stamp));
    EXPECT_EQ(byDate("1/2/25"), Addresses{"a.b.c"}) << stamp;
    EXPECT_EQ(byDate("1/3/25"), Addresses{}) << stamp;
  }
}

TEST_F(SiteSearchTest, ReadsNoDateOfARecordWithoutAnAddress) {
  givenTheFile(record("", "no date") + record("\0x"s, "2/30/24 1:00:00 AM~") + record("a.b.c"));
  EXPECT_EQ(byDate("1/1/25"), Addresses{"a.b.c"});
  EXPECT_EQ(byText("a"), Addresses{"a.b.c"});
}

TEST_F(SiteSearchTest, ReadsTrailingPartRecordsOfAnyLength) {
  // Less than half a record: an address without a date.
  givenTheFile(record("a.b.c") + "d.e.f");
  EXPECT_EQ(failureByText("a"), 13);
  EXPECT_EQ(failureByDate("1/1/25"), 13);
  // A stamp with its end mark, but without the padding after it.
  givenTheFile(record("a.b.c") + record("d.e.f").substr(0, 319));
  EXPECT_EQ(byText("e"), Addresses{"d.e.f"});
  EXPECT_EQ(byDate("1/2/25"), (Addresses{"a.b.c", "d.e.f"}));
  // The end mark is missing.
  givenTheFile(record("a.b.c") + record("d.e.f").substr(0, 318));
  EXPECT_EQ(failureByDate("1/2/25"), 13);
  // No address.
  givenTheFile(record("a.b.c") + " ");
  EXPECT_EQ(byText("a"), Addresses{"a.b.c"});
}

TEST_F(SiteSearchTest, FindsNothingInAnEmptyFile) {
  givenTheFile("");
  EXPECT_EQ(byText("a"), Addresses{});
  EXPECT_EQ(byDate("1/1/25"), Addresses{});
  EXPECT_EQ(byBoth("a", "1/1/25"), Addresses{});
}

TEST_F(SiteSearchTest, CreatesAMissingFile) {
  EXPECT_EQ(byText("a"), Addresses{});
  EXPECT_EQ(memory_.bytesOf(paths_.currentNodesFile), "");
}

TEST_F(SiteSearchTest, ReportsAMissingFolder) {
  paths_.setFolder("Nowhere");
  EXPECT_EQ(failureByText("a"), 76);
  EXPECT_EQ(failureByText(""), 76);
}

TEST_F(SiteSearchTest, SearchesAFileThatMayOnlyBeRead) {
  memory_.givenAReadOnlyFile(paths_.currentNodesFile, record("a.b.c"));
  EXPECT_EQ(byText("a"), Addresses{"a.b.c"});
}

TEST_F(SiteSearchTest, SearchesTheFileThatIsInUseNow) {
  givenTheFile(record("a.b.c"));
  memory_.givenAFolder("Other");
  memory_.givenAFile("Other/nodes.dat", record("x.b.z"));
  EXPECT_EQ(byText("b"), Addresses{"a.b.c"});
  paths_.setFolder("Other");
  EXPECT_EQ(byText("b"), Addresses{"x.b.z"});
}

TEST_F(SiteSearchTest, WritesNothingAndClosesTheFile) {
  givenTheFile(record("a.b.c") + "  ");
  byText("a");
  byDate("1/1/25");
  EXPECT_EQ(memory_.bytesOf(paths_.currentNodesFile), record("a.b.c") + "  ");
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 0);
  EXPECT_EQ(files_.callsOf(FileCall::Sync), 0);
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(SiteSearchTest, SearchesToTheEndOfALargeFile) {
  std::string bytes;
  for (int i = 0; i < 3'000; ++i) bytes += record("host.of.number" + std::to_string(i));
  givenTheFile(bytes);
  EXPECT_EQ(byText("NUMBER299"),
            (Addresses{"host.of.number299", "host.of.number2990", "host.of.number2991",
                       "host.of.number2992", "host.of.number2993", "host.of.number2994",
                       "host.of.number2995", "host.of.number2996", "host.of.number2997",
                       "host.of.number2998", "host.of.number2999"}));
  EXPECT_EQ(byDate("1/2/25").size(), 3'000U);
}

TEST_F(SiteSearchTest, FailsWithTheNumberOfWhateverCallFails) {
  std::string bytes;
  for (int i = 0; i < 2'000; ++i) bytes += record("a.b.c");  // more than one read
  givenTheFile(bytes);
  byBoth("a", "1/1/25");
  const int calls = static_cast<int>(files_.calls().size());
  ASSERT_GE(calls, 4);  // open, length, read, read
  for (int call = 1; call <= calls; ++call) {
    for (const int number : kFileFailures) {
      // A missing file is created.
      if (call == 1 && number == 53) continue;
      files_.reset();
      files_.failAtCall(call, number);
      EXPECT_EQ(failureByBoth("a", "1/1/25"), number) << "call " << call;
      EXPECT_EQ(memory_.openFiles(), 0);
    }
  }
}

TEST_F(SiteSearchTest, ReadsAFileThatAnotherProgramIsReading) {
  givenTheFile(record("a.b.c"));
  const auto held = memory_.openForReading(paths_.currentNodesFile);
  EXPECT_EQ(byText("a"), Addresses{"a.b.c"});
}

TEST_F(SiteSearchTest, FailsForARecordThatCannotBeRead) {
  givenTheFile(record("a.b.c") + record("d.e.f") + record("g.h.i"));
  files_.spoilBytes(322 + 100, 1, 57);
  EXPECT_EQ(failureByText("g"), 57);
}

TEST_F(SiteSearchTest, TakesBytesForNulsThatAreGoneWhenItGetsToThem) {
  givenTheFile(record("a.b.c") + record("d.e.f"));
  files_.cutReadShort(1, 322);
  EXPECT_EQ(byDate("1/1/25"), Addresses{"a.b.c"});
}

// The same search in the simplest form, record by record. Returns nullopt if it meets a
// date that cannot be read.
namespace plain {

char lowerCase(char character) {
  const std::string capitals =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
      "\x8A\x8C\x8E\x9F\xC0\xC1\xC2\xC3\xC4\xC5\xC6\xC7\xC8\xC9\xCA\xCB\xCC\xCD\xCE\xCF"
      "\xD0\xD1\xD2\xD3\xD4\xD5\xD6\xD8\xD9\xDA\xDB\xDC\xDD\xDE";
  const std::string small =
      "abcdefghijklmnopqrstuvwxyz"
      "\x9A\x9C\x9E\xFF\xE0\xE1\xE2\xE3\xE4\xE5\xE6\xE7\xE8\xE9\xEA\xEB\xEC\xED\xEE\xEF"
      "\xF0\xF1\xF2\xF3\xF4\xF5\xF6\xF8\xF9\xFA\xFB\xFC\xFD\xFE";
  const auto place = capitals.find(character);
  return place == std::string::npos ? character : small[place];
}

bool contains(const std::string& text, const std::string& sought) {
  if (sought.empty()) return true;
  return std::search(text.begin(), text.end(), sought.begin(), sought.end(),
                     [](char one, char other) { return lowerCase(one) == lowerCase(other); }) !=
         text.end();
}

std::string addressIn(const std::string& bytes) {
  std::string field = bytes.substr(0, 300);
  if (field[0] == ' ') return "";
  if (field.find('\0') != std::string::npos) return field.substr(0, field.find('\0'));
  return field.substr(0, field.find(' '));
}

// The days in the random files, as numbers that increase with the date.
struct Day {
  std::string text;
  int number;
};
const std::array<Day, 6> kDays{{{"12/31/99", 19991231},
                                {"1/1/00", 20000101},
                                {"2/29/24", 20240229},
                                {"9/30/25", 20250930},
                                {"10/1/25", 20251001},
                                {"1/1/98", 20980101}}};

std::optional<int> dayNamed(const std::string& text) {
  for (const Day& day : kDays) {
    if (day.text == text) return day.number;
  }
  return std::nullopt;
}

std::optional<int> dayIn(const std::string& bytes) {
  const std::string field = bytes.substr(301, 21);
  const auto tilde = field.find('~');
  if (tilde == std::string::npos) return std::nullopt;
  const std::string stamp = field.substr(0, tilde + 1);
  const auto blank = stamp.find(' ');
  if (blank == std::string::npos) return std::nullopt;
  return dayNamed(stamp.substr(0, blank));
}

std::optional<Addresses> search(const std::string& file, const SearchCriteria& criteria) {
  Addresses found;
  const bool byUrl = criteria.userSearchType == UserSearchType::Url;
  const bool byDate = criteria.userSearchType == UserSearchType::Date;
  if (byUrl && criteria.searchText.empty()) return found;
  for (std::size_t at = 0; at < file.size(); at += 322) {
    std::string bytes = file.substr(at, 322);
    bytes.resize(322, '\0');
    const std::string address = addressIn(bytes);
    if (address.empty()) continue;
    const auto visited = dayIn(bytes);
    if (!visited) return std::nullopt;
    bool isMatch = byDate || contains(address, criteria.searchText);
    if (!byUrl) {
      const auto sought = dayNamed(criteria.searchDate);
      if (!sought) return std::nullopt;
      isMatch = isMatch && *sought <= *visited;
    }
    if (isMatch) found.push_back(address);
  }
  return found;
}

}  // namespace plain

// Random files, mostly of valid records, mixed with anything else that a file may
// contain.
class RandomFiles {
 public:
  std::string nextFile() {
    std::string file;
    const std::size_t records = below(12);
    for (std::size_t i = 0; i < records; ++i) {
      file += file.size() >= 322 && below(6) == 0 ? file.substr(0, 322) : nextRecord();
    }
    if (below(3) == 0) file += nextRecord().substr(0, below(323));
    return file;
  }

  SearchCriteria nextCriteria(const std::string& file) {
    constexpr UserSearchType kTypes[] = {UserSearchType::Url, UserSearchType::Date,
                                         UserSearchType::Both};
    return {kTypes[below(3)], nextText(file), below(20) == 0 ? "13/45/99" : nextDay()};
  }

 private:
  std::string nextRecord() {
    if (below(8) == 0) return std::string(322, below(2) == 0 ? ' ' : '\0');
    std::string address(1 + below(below(10) == 0 ? 300 : 40), ' ');
    const bool anyByte = below(2) == 0;
    for (char& character : address) character = anyByte ? nextByte() : "aAbB./\xE9\xC9"[below(8)];
    std::string stamp = nextDay() + " 3:04:05 AM~";
    if (below(60) == 0) stamp[below(stamp.size())] = nextByteButADigit();
    if (below(3) == 0) address += '\0';
    return record(address, stamp);
  }

  // A piece of the file in which some letters are converted to lower case.
  std::string nextText(const std::string& file) {
    if (file.empty() || below(10) == 0) return below(2) == 0 ? "" : "a";
    const std::size_t place = below(file.size()) / 322 * 322 + below(5);
    std::string text = file.substr(std::min(place, file.size()), 1 + below(4));
    for (char& character : text) {
      if (below(2) == 0) character = plain::lowerCase(character);
    }
    return text;
  }

  std::string nextDay() { return plain::kDays[below(plain::kDays.size())].text; }
  char nextByte() { return static_cast<char>(below(256)); }

  // A digit might turn the date of a stamp into another valid date.
  char nextByteButADigit() {
    const char byte = nextByte();
    return byte >= '0' && byte <= '9' ? 'x' : byte;
  }

  std::size_t below(std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_);
  }

  std::mt19937 random_{1};
};

TEST_F(SiteSearchTest, AgreesWithThePlainestSearchOnRandomFiles) {
  RandomFiles random;
  int matches = 0;
  int failures = 0;
  for (int round = 0; round < 5'000; ++round) {
    const std::string file = random.nextFile();
    const SearchCriteria criteria = random.nextCriteria(file);
    const auto expected = plain::search(file, criteria);
    givenTheFile(file);
    if (expected) {
      ASSERT_EQ(search(criteria), *expected) << "round " << round;
      matches += static_cast<int>(expected->size());
    } else {
      ASSERT_EQ(failureNumberOf([&] { return search(criteria); }), 13) << "round " << round;
      ++failures;
    }
  }
  EXPECT_GT(matches, 2'000);
  EXPECT_GT(failures, 200);
  EXPECT_LT(failures, 3'000);
}

// The words of the record tests in an address, and the same in capitals in the search.
TEST_F(SiteSearchTest, IgnoresTheCaseOfLettersInEveryCodePage) {
  for (const test::CodePageSample& sample : test::kCodePageSamples) {
    const CodePage codePage(sample.codePage);
    const std::string address = std::string("one.two.three/") + sample.bytes + ".html";
    givenTheFile(record("one.two.three/other") + record(address));
    for (const char* const text : {sample.word, sample.capitals}) {
      EXPECT_EQ(searchSiteFile(files_, paths_, codePage, {UserSearchType::Url, text, ""}),
                Addresses{address})
          << sample.codePage << ' ' << text;
    }
  }
}

TEST_F(SiteSearchTest, SearchesTheBytesOfTheCodePageInUse) {
  givenTheFile(record("one.two.three/\xC6\xF3\xEA"));  // written under 1251
  const CodePage cyrillic(1251);
  const SearchCriteria russian{UserSearchType::Url, "Жук", ""};
  const SearchCriteria western{UserSearchType::Url, "Æóê", ""};
  EXPECT_EQ(searchSiteFile(files_, paths_, cyrillic, russian).size(), 1U);
  EXPECT_EQ(searchSiteFile(files_, paths_, cyrillic, western).size(), 0U);
  EXPECT_EQ(searchSiteFile(files_, paths_, test::westernCodePage(), russian).size(), 0U);
  EXPECT_EQ(searchSiteFile(files_, paths_, test::westernCodePage(), western).size(), 1U);
}

TEST(SiteMatcher, MatchesNoRecordByAnEmptyText) {
  const SearchCriteria criteria{UserSearchType::Url, "", ""};
  SiteMatcher matcher(test::westernCodePage(), criteria);
  EXPECT_FALSE(matcher.canMatch());
  EXPECT_FALSE(matcher.matches(record("one.two.three")));
  const SearchCriteria withDate{UserSearchType::Both, "", "1/1/25"};
  SiteMatcher other(test::westernCodePage(), withDate);
  EXPECT_TRUE(other.canMatch());
  EXPECT_TRUE(other.matches(record("one.two.three")));
}

}  // namespace
}  // namespace quorrix
