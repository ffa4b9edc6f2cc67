#include "platform/text_encoding.h"

#include <gtest/gtest.h>

#include <string>

namespace quorrix {
namespace {

using namespace std::string_literals;

struct Character {
  const char* byte;
  const char* utf8;
};

// The bytes of the code page whose character has another number than the byte.
constexpr Character kUpperControls[] = {
    {"\x80", "\u20AC"}, {"\x82", "\u201A"}, {"\x83", "\u0192"}, {"\x84", "\u201E"},
    {"\x85", "\u2026"}, {"\x86", "\u2020"}, {"\x87", "\u2021"}, {"\x88", "\u02C6"},
    {"\x89", "\u2030"}, {"\x8A", "\u0160"}, {"\x8B", "\u2039"}, {"\x8C", "\u0152"},
    {"\x8E", "\u017D"}, {"\x91", "\u2018"}, {"\x92", "\u2019"}, {"\x93", "\u201C"},
    {"\x94", "\u201D"}, {"\x95", "\u2022"}, {"\x96", "\u2013"}, {"\x97", "\u2014"},
    {"\x98", "\u02DC"}, {"\x99", "\u2122"}, {"\x9A", "\u0161"}, {"\x9B", "\u203A"},
    {"\x9C", "\u0153"}, {"\x9E", "\u017E"}, {"\x9F", "\u0178"},
};

// The bytes to which the code page assigns no character; they become the controls with
// their numbers.
constexpr Character kUnassigned[] = {
    {"\x81", "\xC2\x81"}, {"\x8D", "\xC2\x8D"}, {"\x8F", "\xC2\x8F"},
    {"\x90", "\xC2\x90"}, {"\x9D", "\xC2\x9D"},
};

TEST(Windows1252FromUtf8, KeepsAscii) {
  EXPECT_EQ(windows1252FromUtf8("http://one.two.three/~a?b=c#d"), "http://one.two.three/~a?b=c#d");
  EXPECT_EQ(windows1252FromUtf8(""), "");
  EXPECT_EQ(windows1252FromUtf8("\x7F"), "\x7F");
}

TEST(Windows1252FromUtf8, KeepsNul) { EXPECT_EQ(windows1252FromUtf8("a\0b"s), "a\0b"s); }

TEST(Windows1252FromUtf8, MakesOneByteOfAWesternLetter) {
  EXPECT_EQ(windows1252FromUtf8("Z\xC3\xBCrich"), "Z\xFCrich");
  EXPECT_EQ(windows1252FromUtf8("\xC2\xA0\xC3\xBF"), "\xA0\xFF");
}

TEST(Windows1252FromUtf8, KnowsEveryUpperControl) {
  for (const Character& character : kUpperControls) {
    EXPECT_EQ(windows1252FromUtf8(character.utf8), character.byte);
  }
  for (const Character& character : kUnassigned) {
    EXPECT_EQ(windows1252FromUtf8(character.utf8), character.byte);
  }
}

TEST(Windows1252FromUtf8, AsksAboutACharacterWithoutAPlace) {
  EXPECT_EQ(windows1252FromUtf8("\u0142\u00F3d\u017A"),
            "?\xF3"
            "d?");
  EXPECT_EQ(windows1252FromUtf8("\u65E5\u672C"), "??");
  EXPECT_EQ(windows1252FromUtf8("a\U0001F600b"), "a?b");
  EXPECT_EQ(windows1252FromUtf8("\xC2\x80"), "?");  // the euro has this byte
  EXPECT_EQ(windows1252FromUtf8("\xF4\x8F\xBF\xBF"), "?");
}

TEST(Windows1252FromUtf8, AsksOnceAboutASequenceThatIsCutShort) {
  EXPECT_EQ(windows1252FromUtf8("\xC3"), "?");
  EXPECT_EQ(windows1252FromUtf8("\xE2\x82"), "?");
  EXPECT_EQ(windows1252FromUtf8("\xF0\x9F\x98"), "?");
  EXPECT_EQ(windows1252FromUtf8("\xC3"
                                "a"),
            "?a");
  EXPECT_EQ(windows1252FromUtf8("\xE2\x82"
                                "a"),
            "?a");
}

TEST(Windows1252FromUtf8, AsksAboutBytesThatBeginNothing) {
  EXPECT_EQ(windows1252FromUtf8("\x80"), "?");
  EXPECT_EQ(windows1252FromUtf8("a\xBF"
                                "b"),
            "a?b");
  EXPECT_EQ(windows1252FromUtf8("\xFE\xFF"), "??");
}

TEST(Windows1252FromUtf8, RefusesAnOverlongForm) {
  // Decoded without that check, these would be "/", "/" and "A".
  EXPECT_EQ(windows1252FromUtf8("\xC0\xAF").find('/'), std::string::npos);
  EXPECT_EQ(windows1252FromUtf8("\xE0\x80\xAF"), "?");
  EXPECT_EQ(windows1252FromUtf8("\xF0\x80\x81\x81"), "?");
}

TEST(Windows1252FromUtf8, RefusesSurrogatesAndWhatIsBeyondUnicode) {
  EXPECT_EQ(windows1252FromUtf8("\xED\xA0\x80"), "?");
  EXPECT_EQ(windows1252FromUtf8("\xF4\x90\x80\x80"), "?");
}

TEST(Utf8FromWindows1252, KeepsAscii) {
  EXPECT_EQ(utf8FromWindows1252("one.two.three"), "one.two.three");
  EXPECT_EQ(utf8FromWindows1252("a\0b"s), "a\0b"s);
  EXPECT_EQ(utf8FromWindows1252(""), "");
}

TEST(Utf8FromWindows1252, KnowsEveryUpperByte) {
  for (const Character& character : kUpperControls) {
    EXPECT_EQ(utf8FromWindows1252(character.byte), character.utf8);
  }
  for (const Character& character : kUnassigned) {
    EXPECT_EQ(utf8FromWindows1252(character.byte), character.utf8);
  }
  EXPECT_EQ(utf8FromWindows1252("\xA0\xE9\xFF"), "\u00A0\u00E9\u00FF");
}

TEST(TextEncoding, BringsEveryByteBack) {
  for (int value = 0; value < 256; ++value) {
    const std::string text(1, static_cast<char>(value));
    EXPECT_EQ(windows1252FromUtf8(utf8FromWindows1252(text)), text) << value;
  }
}

TEST(ExactWindows1252, IsTheTextWhereEveryCharacterHasAPlace) {
  EXPECT_EQ(exactWindows1252FromUtf8(""), "");
  EXPECT_EQ(exactWindows1252FromUtf8("a?\u00e9\u20ac"), "a?\xE9\x80");
}

TEST(ExactWindows1252, IsNothingWhereOneHasNone) {
  for (const char* text : {"\u0101", "abc\u0416", "\U0001F511", "\xFF", "a\xC3"}) {
    EXPECT_EQ(exactWindows1252FromUtf8(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace quorrix
