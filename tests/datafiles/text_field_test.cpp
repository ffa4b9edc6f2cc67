#include "datafiles/text_field.h"

#include <gtest/gtest.h>

#include <string>

namespace quorrix {
namespace {

using namespace std::string_literals;

TEST(FieldOf, GivesTheBytesOfTheField) {
  const std::string record = "address N stamp~";
  EXPECT_EQ(fieldOf(record, {.offset = 8, .width = 2}), "N ");
  EXPECT_EQ(fieldOf(record, {.offset = 0, .width = 16}), "address N stamp~");
}

TEST(FieldLayout, EndsWhereTheNextFieldBegins) {
  EXPECT_EQ((FieldLayout{.offset = 300, .width = 1}).end(), 301U);
}

TEST(FieldText, LosesItsPadding) { EXPECT_EQ(fieldText("one.two.three   "), "one.two.three"); }

TEST(FieldText, IsTheWholeFieldWhenItIsFull) { EXPECT_EQ(fieldText("full"), "full"); }

TEST(FieldText, IsEmptyWhenTheFieldBeginsWithABlank) {
  EXPECT_EQ(fieldText("        "), "");
  EXPECT_EQ(fieldText(" one.two.three"), "");
  EXPECT_EQ(fieldText(" one\0two"s), "");
}

TEST(FieldText, StopsAtTheFirstNul) {
  EXPECT_EQ(fieldText("one\0two\0  "s), "one");
  EXPECT_EQ(fieldText("\0one     "s), "");
  EXPECT_EQ(fieldText("\0\0\0\0"s), "");
}

TEST(FieldText, StopsAtTheFirstBlankWhereThereIsNoNul) { EXPECT_EQ(fieldText("one two  "), "one"); }

TEST(FieldText, KeepsTheBlanksInFrontOfANul) {
  EXPECT_EQ(fieldText("one   \0\0"s), "one   ");
  EXPECT_EQ(fieldText("one two\0 "s), "one two");
}

TEST(FieldText, IsEmptyForAnEmptyField) { EXPECT_EQ(fieldText(""), ""); }

TEST(FieldText, KeepsEveryCharacterThatIsNeitherBlankNorNul) {
  EXPECT_EQ(fieldText("\x01\t\n\x7F\x80\xA0\xFF   "), "\x01\t\n\x7F\x80\xA0\xFF");
}

TEST(FieldHoldsText, IsTrueUnlessTheTextIsEmpty) {
  EXPECT_TRUE(fieldHoldsText("one   "));
  EXPECT_TRUE(fieldHoldsText("\t one"));
  EXPECT_FALSE(fieldHoldsText(" one"));
  EXPECT_FALSE(fieldHoldsText("\0one"s));
  EXPECT_FALSE(fieldHoldsText("   "));
  EXPECT_FALSE(fieldHoldsText(""));
}

TEST(FieldHolds, ComparesTheTextWithoutThePadding) {
  EXPECT_TRUE(fieldHolds("one.two.three   ", "one.two.three"));
  EXPECT_TRUE(fieldHolds("one.two.three\0  "s, "one.two.three"));
  EXPECT_TRUE(fieldHolds("full", "full"));
}

TEST(FieldHolds, IsFalseForABeginningOrAnExtension) {
  EXPECT_FALSE(fieldHolds("one.two.three   ", "one.two"));
  EXPECT_FALSE(fieldHolds("one.two   ", "one.two.three"));
  EXPECT_FALSE(fieldHolds("one", "one.two"));
}

TEST(FieldHolds, CountsLetterCase) { EXPECT_FALSE(fieldHolds("One  ", "one")); }

TEST(FieldHolds, ReadsNothingInAFieldThatBeginsWithABlank) {
  EXPECT_FALSE(fieldHolds(" one  ", " one"));
  EXPECT_FALSE(fieldHolds(" one  ", "one"));
  EXPECT_TRUE(fieldHolds(" one  ", ""));
}

TEST(FieldHolds, NeverFindsATextWithABlankUnlessANulFollows) {
  EXPECT_FALSE(fieldHolds("one two   ", "one two"));
  EXPECT_TRUE(fieldHolds("one two\0  "s, "one two"));
}

TEST(FillField, PadsWithBlanks) {
  std::string record = "????????";
  fillField(record, {.offset = 2, .width = 5}, "ab");
  EXPECT_EQ(record, "??ab   ?");
}

TEST(FillField, CutsAtTheWidth) {
  std::string record = "????????";
  fillField(record, {.offset = 2, .width = 3}, "abcdef");
  EXPECT_EQ(record, "??abc???");
}

TEST(FillField, TakesATextThatFitsExactly) {
  std::string record = "????";
  fillField(record, {.offset = 0, .width = 4}, "abcd");
  EXPECT_EQ(record, "abcd");
}

TEST(FillField, BlanksTheFieldForAnEmptyText) {
  std::string record = "xxxx";
  fillField(record, {.offset = 1, .width = 2}, "");
  EXPECT_EQ(record, "x  x");
}

}  // namespace
}  // namespace quorrix
