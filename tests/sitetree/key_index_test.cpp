#include "sitetree/key_index.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace quorrix {
namespace {

std::uint32_t hashOf(std::string_view key) {
  KeyHash hash;
  hash.add(key);
  return hash.value();
}

KeyIndex::Number findNumber(const KeyIndex& index, std::uint32_t hash, KeyIndex::Number sought) {
  return index.find(hash, [sought](KeyIndex::Number number) { return number == sought; });
}

TEST(KeyIndex, FindsNothingWhileEmpty) {
  const KeyIndex index;
  EXPECT_EQ(index.find(0, [](KeyIndex::Number) { return true; }), KeyIndex::kNone);
}

TEST(KeyIndex, FindsWhatWasInserted) {
  KeyIndex index;
  index.insert(7, 1);
  index.insert(8, 2);
  EXPECT_EQ(findNumber(index, 7, 1), 1U);
  EXPECT_EQ(findNumber(index, 8, 2), 2U);
}

TEST(KeyIndex, AsksOnlyAboutNumbersOfTheSameHash) {
  KeyIndex index;
  index.insert(7, 1);
  index.insert(7 + 16, 2);  // the same place in a small index
  std::set<KeyIndex::Number> asked;
  EXPECT_EQ(index.find(7 + 16,
                       [&asked](KeyIndex::Number number) {
                         asked.insert(number);
                         return false;
                       }),
            KeyIndex::kNone);
  EXPECT_EQ(asked, std::set<KeyIndex::Number>{2});
}

TEST(KeyIndex, TellsNumbersOfOneHashApart) {
  KeyIndex index;
  for (KeyIndex::Number number = 0; number < 100; ++number) index.insert(0xFFFFFFFF, number);
  for (KeyIndex::Number number = 0; number < 100; ++number) {
    EXPECT_EQ(findNumber(index, 0xFFFFFFFF, number), number);
  }
  EXPECT_EQ(findNumber(index, 0xFFFFFFFF, 100), KeyIndex::kNone);
}

TEST(KeyIndex, GoesOnAtTheFrontWhenTheEndIsTaken) {
  KeyIndex index;
  index.insert(15, 1);
  index.insert(15, 2);
  index.insert(15, 3);
  index.insert(0, 4);
  EXPECT_EQ(findNumber(index, 15, 3), 3U);
  EXPECT_EQ(findNumber(index, 0, 4), 4U);
}

TEST(KeyIndex, StillFindsEverythingAfterGrowing) {
  constexpr KeyIndex::Number kCount = 20'000;
  KeyIndex index;
  for (KeyIndex::Number number = 0; number < kCount; ++number) {
    index.insert(hashOf(std::to_string(number)), number);
  }
  for (KeyIndex::Number number = 0; number < kCount; ++number) {
    ASSERT_EQ(findNumber(index, hashOf(std::to_string(number)), number), number);
  }
  EXPECT_EQ(findNumber(index, hashOf("20000"), kCount), KeyIndex::kNone);
}

TEST(KeyIndex, KeepsWhatItHasWhenRoomIsReserved) {
  KeyIndex index;
  index.insert(3, 1);
  index.reserve(1000);
  index.reserve(0);
  index.insert(4, 2);
  EXPECT_EQ(findNumber(index, 3, 1), 1U);
  EXPECT_EQ(findNumber(index, 4, 2), 2U);
}

TEST(KeyIndex, EndsASearchForAnAbsentKeyWhenFilledAsReserved) {
  KeyIndex index;
  for (KeyIndex::Number count = 1; count <= 64; ++count) {
    KeyIndex filled;
    filled.reserve(count);
    for (KeyIndex::Number number = 0; number < count; ++number) filled.insert(number, number);
    ASSERT_EQ(findNumber(filled, count + 1000, count), KeyIndex::kNone);
  }
}

TEST(KeyHash, IsTheSameCharacterByCharacter) {
  KeyHash hash;
  hash.add("one");
  hash.add('/');
  hash.add("two");
  EXPECT_EQ(hash.value(), hashOf("one/two"));
}

TEST(KeyHash, DiffersWhereKeysDifferLittle) {
  EXPECT_NE(hashOf("one.two.three/a"), hashOf("one.two.three/b"));
  EXPECT_NE(hashOf("one.two.three/a"), hashOf("one.two.three/A"));
  EXPECT_NE(hashOf("one.two.three"), hashOf("one.two.three/"));
  EXPECT_NE(hashOf("ab"), hashOf("ba"));
  EXPECT_NE(hashOf(""), hashOf(std::string(1, '\0')));
}

TEST(KeyHash, SpreadsKeysThatDifferOnlyAtTheEnd) {
  // Of 10,000 numbers drawn at random from 65,536, about 9,300 are different.
  std::set<std::uint32_t> lowBits;
  for (int page = 0; page < 10'000; ++page) {
    lowBits.insert(hashOf("www.example.org/page" + std::to_string(page)) & 0xFFFFU);
  }
  EXPECT_GT(lowBits.size(), 9'000U);
}

TEST(KeyIndex, KeepsFindingTheOthersWhenOneIsErased) {
  KeyIndex index;
  for (KeyIndex::Number number = 0; number < 100; ++number) index.insert(number % 10, number);
  for (KeyIndex::Number number = 0; number < 100; number += 3) index.erase(number % 10, number);
  for (KeyIndex::Number number = 0; number < 100; ++number) {
    EXPECT_EQ(findNumber(index, number % 10, number), number % 3 == 0 ? KeyIndex::kNone : number);
  }
}

TEST(KeyIndex, KeepsFindingTheOnlyOtherOneWhenOneIsErased) {
  KeyIndex index;
  index.insert(7, 1);
  index.insert(7, 2);
  index.erase(7, 1);
  EXPECT_EQ(findNumber(index, 7, 2), 2U);
}

TEST(KeyIndex, IsEmptyWhenCleared) {
  KeyIndex index;
  index.insert(7, 1);
  index.clear();
  EXPECT_EQ(findNumber(index, 7, 1), KeyIndex::kNone);
  index.insert(7, 2);
  EXPECT_EQ(findNumber(index, 7, 2), 2U);
}

}  // namespace
}  // namespace quorrix
