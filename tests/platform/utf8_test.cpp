#include "platform/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quorrix {
namespace {

using Characters = std::vector<char32_t>;

Characters charactersOf(std::string_view utf8) {
  Characters characters;
  while (!utf8.empty()) characters.push_back(takeCharacter(utf8));
  return characters;
}

std::string utf8Of(char16_t character) {
  std::string utf8;
  appendUtf8(utf8, character);
  return utf8;
}

TEST(TakeCharacter, ReadsCharactersOfEveryLength) {
  EXPECT_EQ(charactersOf("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"),
            (Characters{'a', 0xE9, 0x20AC, 0x1F600}));
  EXPECT_EQ(charactersOf("\xF4\x8F\xBF\xBF"), Characters{0x10FFFF});
  EXPECT_EQ(charactersOf({"\0", 1}), Characters{0});
}

TEST(TakeCharacter, TakesASequenceThatIsCutShortForOneMalformedCharacter) {
  EXPECT_EQ(charactersOf("\xC3"), Characters{kMalformed});
  EXPECT_EQ(charactersOf("\xE2\x82"), Characters{kMalformed});
  EXPECT_EQ(charactersOf("\xF0\x9F\x98"), Characters{kMalformed});
  EXPECT_EQ(charactersOf("\xE2\x82z"), (Characters{kMalformed, 'z'}));
}

TEST(TakeCharacter, TakesEachByteThatBeginsNothingForAMalformedCharacter) {
  EXPECT_EQ(charactersOf("\x80"), Characters{kMalformed});
  EXPECT_EQ(charactersOf("\xFE\xFF"), (Characters{kMalformed, kMalformed}));
}

TEST(TakeCharacter, RefusesAnOverlongForm) {
  // A slash, which a check of paths must not overlook.
  EXPECT_EQ(charactersOf("\xE0\x80\xAF"), Characters{kMalformed});
  EXPECT_EQ(charactersOf("\xF0\x80\x81\x81"), Characters{kMalformed});
  EXPECT_EQ(charactersOf("\xC0\xAF"), (Characters{kMalformed, kMalformed}));
}

TEST(TakeCharacter, RefusesSurrogatesAndWhatIsBeyondUnicode) {
  EXPECT_EQ(charactersOf("\xED\xA0\x80"), Characters{kMalformed});
  EXPECT_EQ(charactersOf("\xF4\x90\x80\x80"), Characters{kMalformed});
}

TEST(AppendUtf8, WritesCharactersOfEveryLength) {
  EXPECT_EQ(utf8Of(0), std::string(1, '\0'));
  EXPECT_EQ(utf8Of(0x7F), "\x7F");
  EXPECT_EQ(utf8Of(0x80), "\xC2\x80");
  EXPECT_EQ(utf8Of(0x7FF), "\xDF\xBF");
  EXPECT_EQ(utf8Of(0x800), "\xE0\xA0\x80");
  EXPECT_EQ(utf8Of(0xFFFF), "\xEF\xBF\xBF");
}

TEST(IsUtf8, TellsWellFormedText) {
  EXPECT_TRUE(isUtf8(""));
  EXPECT_TRUE(isUtf8("caf\xC3\xA9"));
  EXPECT_FALSE(isUtf8("caf\xE9"));
  EXPECT_FALSE(isUtf8("caf\xC3"));
}

}  // namespace
}  // namespace quorrix
