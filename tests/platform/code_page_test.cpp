#include "platform/code_page.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/code_page_tables.h"
#include "platform/system_code_page.h"
#include "platform/utf8.h"
#include "support/code_pages.h"
#include "support/failure_number.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::CodePageTable;
using test::westernCodePage;

constexpr char16_t kUnassigned = 0xFFFD;

std::string utf8Of(char16_t character) {
  std::string utf8;
  appendUtf8(utf8, character);
  return utf8;
}

// The letters beyond ASCII that are a pair, in the order of their bytes.
struct LetterPairs {
  unsigned number;
  const char* capitals;  // UTF-8
  const char* smallLetters;
};

constexpr LetterPairs kLetterPairs[] = {
    {874, "", ""},
    {1250, "ŠŚŤŽŹŁĄŞŻĽŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖŘŮÚŰÜÝŢ", "šśťžźłąşżľŕáâăäĺćçčéęëěíîďđńňóôőöřůúűüýţ"},
    {1251, "ЂЃЉЊЌЋЏЎЈҐЁЄЇІЅАБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ",
     "ђѓљњќћџўјґёєїіѕабвгдежзийклмнопрстуфхцчшщъыьэюя"},
    {1252, "ŠŒŽŸÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞ", "šœžÿàáâãäåæçèéêëìíîïðñòóôõöøùúûüýþ"},
    {1253, "ΆΈΉΊΌΎΏΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΣΤΥΦΧΨΩΪΫ", "άέήίόύώαβγδεζηθικλμνξοπρσςτυφχψωϊϋ"},
    {1254, "ŠŒŸÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏĞÑÒÓÔÕÖØÙÚÛÜŞ", "šœÿàáâãäåæçèéêëìíîïğñòóôõöøùúûüş"},
    {1255, "", ""},
    {1256, "Œ", "œ"},
    {1257, "ØŖÆĄĮĀĆÄÅĘĒČÉŹĖĢĶĪĻŠŃŅÓŌÕÖŲŁŚŪÜŻŽ", "øŗæąįāćäåęēčéźėģķīļšńņóōõöųłśūüżž"},
    {1258, "ŒŸÀÁÂĂÄÅÆÇÈÉÊËÍÎÏĐÑÓÔƠÖØÙÚÛÜƯ", "œÿàáâăäåæçèéêëíîïđñóôơöøùúûüư"},
};

class CodePageOf : public testing::TestWithParam<CodePageTable> {
 protected:
  // glibc leaves the byte unassigned; the tables of Windows have had U+05BA there since
  // 2006.
  [[nodiscard]] bool systemsDisagreeAbout(int byte) const {
    return codePage_.number() == 1255 && byte == 0xCA;
  }

  const CodePage codePage_{GetParam().number};
};

TEST_P(CodePageOf, HasTheCharactersOfItsTable) {
  ASSERT_EQ(GetParam().upperCharacters.size(), 128U);
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const char16_t character = GetParam().upperCharacters[static_cast<std::size_t>(byte - 0x80)];
    if (character == kUnassigned || systemsDisagreeAbout(byte)) continue;
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(codePage_.toUtf16(text), std::u16string(1, character)) << byte;
    EXPECT_EQ(codePage_.toUtf8(text), utf8Of(character)) << byte;
    EXPECT_EQ(codePage_.fromUtf8(utf8Of(character)), text) << byte;
  }
}

TEST_P(CodePageOf, HasAscii) {
  for (int byte = 0; byte < 0x80; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(codePage_.toUtf8(text), text);
    EXPECT_EQ(codePage_.fromUtf8(text), text);
  }
}

TEST_P(CodePageOf, BringsEveryByteThereAndBack) {
  for (int byte = 0; byte < 0x100; ++byte) {
    const std::string text = std::string("a") + static_cast<char>(byte) + "a";
    EXPECT_EQ(codePage_.fromUtf8(codePage_.toUtf8(text)), text) << byte;
    EXPECT_EQ(codePage_.exactFromUtf8(codePage_.toUtf8(text)), text) << byte;
  }
}

TEST_P(CodePageOf, GivesAnUnassignedByteACharacterThatNobodyTypes) {
  for (int byte = 0x80; byte < 0x100; ++byte) {
    if (GetParam().upperCharacters[static_cast<std::size_t>(byte - 0x80)] != kUnassigned) continue;
    if (systemsDisagreeAbout(byte)) continue;
    const int expected = byte < 0xA0 ? byte : 0xF700 + byte;
    EXPECT_EQ(codePage_.toUtf16(std::string(1, static_cast<char>(byte))),
              std::u16string(1, static_cast<char16_t>(expected)));
  }
}

// The Vietnamese page also has letters of other pages, as a letter and a mark.
TEST_P(CodePageOf, AsksAboutEveryCharacterOfTheOtherPages) {
  for (const CodePageTable& other : test::kCodePageTables) {
    for (const char16_t character : other.upperCharacters) {
      if (character == kUnassigned || character == 0x05BA) continue;
      const std::string utf8 = utf8Of(character);
      const std::string stored = codePage_.fromUtf8(utf8);
      const bool isHere = GetParam().upperCharacters.find(character) != std::u16string_view::npos;
      const bool isComposed = codePage_.number() == 1258 && stored.size() == 2;
      EXPECT_EQ(stored == "?", !isHere && !isComposed) << int{character};
      EXPECT_EQ(codePage_.exactFromUtf8(utf8).has_value(), isHere || isComposed) << int{character};
      EXPECT_EQ(codePage_.storedLength(character), stored == "?" ? 0U : stored.size());
      if (isComposed) {
        EXPECT_EQ(codePage_.toUtf8(stored), utf8);
      }
    }
  }
}

TEST_P(CodePageOf, PairsLettersThatDifferOnlyInCase) {
  std::string capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  std::string smallLetters = "abcdefghijklmnopqrstuvwxyz";
  for (const LetterPairs& pairs : kLetterPairs) {
    if (pairs.number != codePage_.number()) continue;
    capitals += codePage_.exactFromUtf8(pairs.capitals).value();
    smallLetters += codePage_.exactFromUtf8(pairs.smallLetters).value();
  }
  ASSERT_EQ(capitals.size(), smallLetters.size());
  const auto arePair = [&](char one, char other) {
    for (std::size_t i = 0; i < capitals.size(); ++i) {
      if (capitals[i] == one && smallLetters[i] == other) return true;
    }
    return false;
  };
  const auto areSigmas = [this](char one, char other) {
    constexpr std::string_view kSmallSigmas = "\xF2\xF3";
    return codePage_.number() == 1253 && kSmallSigmas.find(one) != std::string_view::npos &&
           kSmallSigmas.find(other) != std::string_view::npos;
  };
  const auto areTurkish = [this](char one, char other) {
    constexpr std::string_view kForms = "Ii\xDD\xFD";
    return codePage_.number() == 1254 && kForms.find(one) != std::string_view::npos &&
           kForms.find(other) != std::string_view::npos;
  };
  for (int one = 0; one < 0x100; ++one) {
    for (int other = 0; other < 0x100; ++other) {
      const char a = static_cast<char>(one);
      const char b = static_cast<char>(other);
      EXPECT_EQ(codePage_.folded(a) == codePage_.folded(b), one == other || arePair(a, b) ||
                                                                arePair(b, a) || areSigmas(a, b) ||
                                                                areTurkish(a, b))
          << one << " and " << other;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Page, CodePageOf, testing::ValuesIn(test::kCodePageTables),
                         [](const auto& page) { return std::to_string(page.param.number); });

TEST(CodePage, KeepsAnAddressAsItIs) {
  EXPECT_EQ(westernCodePage().fromUtf8("http://one.two.three/~a?b=c#d"),
            "http://one.two.three/~a?b=c#d");
  EXPECT_EQ(westernCodePage().fromUtf8("a\0b"s), "a\0b"s);
  EXPECT_EQ(westernCodePage().fromUtf8(""), "");
}

TEST(CodePage, AsksAboutACharacterWithoutAPlace) {
  EXPECT_EQ(westernCodePage().fromUtf8("łódź"),
            "?\xF3"
            "d?");
  EXPECT_EQ(westernCodePage().fromUtf8("日本"), "??");
  EXPECT_EQ(westernCodePage().fromUtf8("a\U0001F600b"), "a?b");
  EXPECT_EQ(westernCodePage().fromUtf8("\xC2\x80"), "?");  // the euro has this byte
}

TEST(CodePage, AsksOnceAboutAMalformedSequence) {
  EXPECT_EQ(westernCodePage().fromUtf8("a\xE2\x82z"), "a?z");
}

TEST(CodePage, HasNoExactFormOfATextWithACharacterWithoutAPlace) {
  EXPECT_EQ(westernCodePage().exactFromUtf8("a?é€"), "a?\xE9\x80");
  for (const char* const text : {"aŁ", "日", "\U0001F600", "\xC3", "a\x80z"}) {
    EXPECT_EQ(westernCodePage().exactFromUtf8(text), std::nullopt) << text;
  }
}

TEST(CodePage, StoresAVietnameseLetterWithItsToneAsTwoCharacters) {
  const CodePage vietnamese(1258);
  EXPECT_EQ(vietnamese.fromUtf8("Tiếng Việt"), "Ti\xEA\xECng Vi\xEA\xF2t");
  EXPECT_EQ(vietnamese.fromUtf8("ạẢỡỮ"),
            "a\xF2"
            "A\xD2\xF5\xDE\xDD\xDE");
  EXPECT_EQ(vietnamese.fromUtf8("đĐàÀ"), "\xF0\xD0\xE0\xC0");  // the page has these
  EXPECT_EQ(vietnamese.longestCharacter(), 2U);
  EXPECT_EQ(westernCodePage().longestCharacter(), 1U);
}

TEST(CodePage, ReadsALetterAndItsToneAsOneCharacter) {
  const CodePage vietnamese(1258);
  EXPECT_EQ(vietnamese.toUtf8("Ti\xEA\xECng"), "Tiếng");
  EXPECT_EQ(vietnamese.toUtf8("\xEA"), "ê");
  EXPECT_EQ(vietnamese.toUtf8("\xEC\xEA"), "\u0301ê");
  // The page has the small e with an acute accent as one byte.
  EXPECT_EQ(vietnamese.toUtf8("e\xEC"), "e\u0301");
}

// Whatever bytes another program has written.
TEST(CodePage, BringsEveryPairOfVietnameseBytesThereAndBack) {
  const CodePage vietnamese(1258);
  for (int first = 0; first < 0x100; ++first) {
    for (int second = 0; second < 0x100; ++second) {
      const std::string text{static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(vietnamese.fromUtf8(vietnamese.toUtf8(text)), text) << first << ' ' << second;
    }
  }
}

TEST(CodePage, ComparesBeginningsIgnoringCase) {
  EXPECT_TRUE(westernCodePage().beginsWithIgnoringCase("Caf\xE9.fr", "cAF\xC9"));
  EXPECT_TRUE(westernCodePage().beginsWithIgnoringCase("abc", "abc"));
  EXPECT_TRUE(westernCodePage().beginsWithIgnoringCase("abc", ""));
  EXPECT_FALSE(westernCodePage().beginsWithIgnoringCase("abc", "abcd"));
  EXPECT_FALSE(westernCodePage().beginsWithIgnoringCase("abc", "b"));
  EXPECT_TRUE(CodePage(1251).beginsWithIgnoringCase("\xE6\xE8", "\xC6"));
}

TEST(CodePage, FailsIfTheSystemLacksThePage) {
  EXPECT_EQ(test::failureNumberOf([] { return CodePage(4711); }), 53);
}

// Run under several languages, on Windows with other system code pages.
TEST(SystemCodePage, IsTheOneOfTheLanguage) {
  const char* const expected = std::getenv("QUORRIX_EXPECTED_CODE_PAGE");
  if (expected == nullptr) GTEST_SKIP() << "depends on this system's language";
  EXPECT_EQ(std::to_string(systemCodePage()), expected);
}

}  // namespace
}  // namespace quorrix
