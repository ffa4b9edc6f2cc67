#include "search/text_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/code_pages.h"

namespace quorrix {
namespace {

using namespace std::string_literals;

using test::westernCodePage;

bool isIn(std::string_view sought, std::string_view text) {
  return TextSearch(westernCodePage(), sought).isIn(text);
}

TEST(TextSearch, FindsATextAtEveryPlace) {
  EXPECT_TRUE(isIn("news", "news.harbour.example"));
  EXPECT_TRUE(isIn("harbour", "news.harbour.example"));
  EXPECT_TRUE(isIn("example", "news.harbour.example"));
  EXPECT_TRUE(isIn("news.harbour.example", "news.harbour.example"));
}

// The sanitizers report a search that reads beyond its bytes.
TEST(TextSearch, ReadsOnlyTheTextsThatItHas) {
  const std::vector<char> text{'n', 'e', 'w'};
  EXPECT_FALSE(isIn("s", {text.data(), text.size()}));
  EXPECT_TRUE(isIn({}, {text.data(), text.size()}));
}

TEST(TextSearch, FindsNothingThatIsNotThere) {
  EXPECT_FALSE(isIn("newt", "news.harbour.example"));
  EXPECT_FALSE(isIn("examples", "news.harbour.example"));
  EXPECT_FALSE(isIn("xnews", "news.harbour.example"));
  EXPECT_FALSE(isIn("news.harbour.example/", "news.harbour.example"));
}

TEST(TextSearch, IgnoresTheCaseOfLettersOnBothSides) {
  EXPECT_TRUE(isIn("HARBOUR", "news.harbour.example"));
  EXPECT_TRUE(isIn("harbour", "NEWS.HARBOUR.EXAMPLE"));
  EXPECT_TRUE(isIn("hArBoUr", "news.HaRbOuR.example"));
}

TEST(TextSearch, IgnoresTheCaseOfLettersWithMarks) {
  EXPECT_TRUE(isIn("caf\xC9", "caf\xE9.example"));
  EXPECT_TRUE(isIn("caf\xE9", "CAF\xC9.EXAMPLE"));
  EXPECT_TRUE(isIn("\x8C", "s\x9Cur"));
  EXPECT_TRUE(isIn("\x9F", "\xFF"));
  EXPECT_TRUE(isIn("\x8A\x8E", "\x9A\x9E"));
}

// Sigma has a second small letter at the end of words.
TEST(TextSearch, FindsALetterInEachOfThreeForms) {
  const CodePage greek(1253);
  const std::string words[] = {greek.fromUtf8("ΣΟΦΟΣ"), greek.fromUtf8("σοφος"),
                               greek.fromUtf8("ςοφοσ")};
  for (const std::string& sought : words) {
    for (const std::string& text : words) {
      EXPECT_TRUE(TextSearch(greek, sought).isIn("/" + text + "/")) << sought << ' ' << text;
    }
    EXPECT_FALSE(TextSearch(greek, sought).isIn(greek.fromUtf8("ζοφος")));
  }
}

TEST(TextSearch, FindsTheFourFormsOfTheTurkishI) {
  const CodePage turkish(1254);
  EXPECT_TRUE(TextSearch(turkish, turkish.fromUtf8("IĞDIR")).isIn(turkish.fromUtf8("/ığdır/")));
  EXPECT_TRUE(TextSearch(turkish, turkish.fromUtf8("izmir")).isIn(turkish.fromUtf8("/İZMİR/")));
  EXPECT_TRUE(TextSearch(turkish, "INDEX").isIn("/index.html"));
}

TEST(TextSearch, TellsLettersFromTheSameLettersWithMarks) {
  EXPECT_FALSE(isIn("cafe", "caf\xE9.example"));
  EXPECT_FALSE(isIn("caf\xE9", "cafe.example"));
}

TEST(TextSearch, TellsSignsApartThatStandWhereLettersDo) {
  EXPECT_FALSE(isIn("\xD7", "\xF7"));  // × and ÷
  EXPECT_FALSE(isIn("\xDF", "\xFF"));  // ß and ÿ
  EXPECT_FALSE(isIn("@", "`"));
  EXPECT_FALSE(isIn("[", "{"));
}

TEST(TextSearch, FindsTheEmptyTextInEveryText) {
  EXPECT_TRUE(isIn("", "news"));
  EXPECT_TRUE(isIn("", ""));
}

TEST(TextSearch, FindsNothingInTheEmptyText) { EXPECT_FALSE(isIn("a", "")); }

TEST(TextSearch, FindsASingleCharacter) {
  EXPECT_TRUE(isIn("n", "news"));
  EXPECT_TRUE(isIn("E", "news"));
  EXPECT_TRUE(isIn("s", "news"));
  EXPECT_FALSE(isIn("x", "news"));
}

TEST(TextSearch, FindsATextThatBeginsInsideAFailedAttempt) {
  EXPECT_TRUE(isIn("aab", "aaab"));
  EXPECT_TRUE(isIn("abab/c", "abababab/c"));
  EXPECT_TRUE(isIn("ABA", "cabcaba"));
  EXPECT_TRUE(isIn("aBaC", "ababac"));
}

TEST(TextSearch, TakesNulsAndBlanksForCharactersLikeAnyOther) {
  EXPECT_TRUE(isIn("x y", "a/x y/b"));
  EXPECT_TRUE(isIn("x\0y"s, "a/x\0y/b"s));
  EXPECT_FALSE(isIn("x\0z"s, "a/x\0y/b"s));
}

TEST(TextSearch, TakesATextLongerThanAnyAddress) {
  EXPECT_FALSE(isIn(std::string(100'000, 'a'), std::string(300, 'a')));
}

TEST(TextSearch, IsDoneWithAWorstCaseOfRepetitions) {
  EXPECT_FALSE(isIn("b" + std::string(149, 'a'), std::string(300, 'a')));
  EXPECT_TRUE(
      isIn("b" + std::string(149, 'a'), std::string(150, 'a') + "B" + std::string(149, 'A')));
}

// Few different characters give many near misses; all 256 cover every byte.
TEST(TextSearch, AgreesWithAPlainSearchOnRandomTexts) {
  std::mt19937 random(1);
  const auto below = [&random](std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
  };
  const std::string fewCharacters = "aAbB\xE9\xC9/";
  std::string allCharacters;
  for (int byte = 0; byte < 256; ++byte) allCharacters.push_back(static_cast<char>(byte));
  int found = 0;
  for (int round = 0; round < 20'000; ++round) {
    const std::string& characters = round % 2 == 0 ? fewCharacters : allCharacters;
    std::string text(below(30), ' ');
    for (char& character : text) character = characters[below(characters.size())];
    std::string sought = text.substr(below(text.size() + 1));
    sought.resize(std::min(sought.size(), 1 + below(8)));
    if (!sought.empty() && below(2) == 0) sought.back() = characters[below(characters.size())];
    const bool isThere =
        std::search(text.begin(), text.end(), sought.begin(), sought.end(),
                    [](char one, char other) {
                      return westernCodePage().folded(one) == westernCodePage().folded(other);
                    }) != text.end() ||
        sought.empty();
    ASSERT_EQ(isIn(sought, text), isThere) << "round " << round;
    found += isThere ? 1 : 0;
  }
  EXPECT_GT(found, 5'000);
  EXPECT_LT(found, 19'000);
}

}  // namespace
}  // namespace quorrix
