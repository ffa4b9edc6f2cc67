#include "platform/case_folding.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>

namespace quorrix {
namespace {

constexpr std::string_view kCapitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view kSmall = "abcdefghijklmnopqrstuvwxyz";

// The other letters of the code page that have both cases: capital, small.
constexpr std::pair<char, char> kLettersWithMarks[] = {
    {'\x8A', '\x9A'},  // Š š
    {'\x8C', '\x9C'},  // Œ œ
    {'\x8E', '\x9E'},  // Ž ž
    {'\x9F', '\xFF'},  // Ÿ ÿ
    {'\xC0', '\xE0'},  // À à
    {'\xC1', '\xE1'},  // Á á
    {'\xC2', '\xE2'},  // Â â
    {'\xC3', '\xE3'},  // Ã ã
    {'\xC4', '\xE4'},  // Ä ä
    {'\xC5', '\xE5'},  // Å å
    {'\xC6', '\xE6'},  // Æ æ
    {'\xC7', '\xE7'},  // Ç ç
    {'\xC8', '\xE8'},  // È è
    {'\xC9', '\xE9'},  // É é
    {'\xCA', '\xEA'},  // Ê ê
    {'\xCB', '\xEB'},  // Ë ë
    {'\xCC', '\xEC'},  // Ì ì
    {'\xCD', '\xED'},  // Í í
    {'\xCE', '\xEE'},  // Î î
    {'\xCF', '\xEF'},  // Ï ï
    {'\xD0', '\xF0'},  // Ð ð
    {'\xD1', '\xF1'},  // Ñ ñ
    {'\xD2', '\xF2'},  // Ò ò
    {'\xD3', '\xF3'},  // Ó ó
    {'\xD4', '\xF4'},  // Ô ô
    {'\xD5', '\xF5'},  // Õ õ
    {'\xD6', '\xF6'},  // Ö ö
    {'\xD8', '\xF8'},  // Ø ø
    {'\xD9', '\xF9'},  // Ù ù
    {'\xDA', '\xFA'},  // Ú ú
    {'\xDB', '\xFB'},  // Û û
    {'\xDC', '\xFC'},  // Ü ü
    {'\xDD', '\xFD'},  // Ý ý
    {'\xDE', '\xFE'},  // Þ þ
};

bool isCapital(char character) {
  for (const auto& [capital, small] : kLettersWithMarks) {
    if (character == capital) return true;
  }
  return kCapitals.find(character) != std::string_view::npos;
}

TEST(Folded, IsTheSmallLetterOfACapital) {
  for (std::size_t i = 0; i < 26; ++i) EXPECT_EQ(folded(kCapitals[i]), kSmall[i]);
  for (const auto& [capital, small] : kLettersWithMarks) EXPECT_EQ(folded(capital), small);
}

TEST(Folded, IsTheByteItselfForAllOthers) {
  int others = 0;
  for (int byte = 0; byte < 256; ++byte) {
    const char character = static_cast<char>(byte);
    if (isCapital(character)) continue;
    EXPECT_EQ(folded(character), character) << byte;
    ++others;
  }
  EXPECT_EQ(others, 256 - 26 - 34);
}

TEST(Folded, LeavesLettersWithoutAPartnerAndSigns) {
  EXPECT_EQ(folded('\xDF'), '\xDF');  // ß, which is not a small ÿ
  EXPECT_EQ(folded('\x83'), '\x83');  // ƒ
  EXPECT_EQ(folded('\xB5'), '\xB5');  // µ
  EXPECT_EQ(folded('\xD7'), '\xD7');  // ×, which is not a capital ÷
  EXPECT_EQ(folded('\xF7'), '\xF7');  // ÷
  EXPECT_EQ(folded('@'), '@');
  EXPECT_EQ(folded('['), '[');
}

TEST(BeginsWithIgnoringCase, ComparesLetterByLetter) {
  EXPECT_TRUE(beginsWithIgnoringCase("Caf\xE9.fr", "cAF\xC9"));
  EXPECT_TRUE(beginsWithIgnoringCase("abc", "abc"));
  EXPECT_TRUE(beginsWithIgnoringCase("abc", ""));
  EXPECT_FALSE(beginsWithIgnoringCase("abc", "abcd"));
  EXPECT_FALSE(beginsWithIgnoringCase("abc", "b"));
}

}  // namespace
}  // namespace quorrix
