#include "datafiles/site_address.h"

#include <gtest/gtest.h>

#include <array>
#include <new>
#include <string>

#include "platform/failure.h"
#include "support/failure_number.h"

namespace quorrix {
namespace {

using test::failureNumberOf;

bool isValid(std::string_view address) { return validateAddress(address).isValid; }

char flagOf(std::string_view address) { return validateAddress(address).protocolFlag; }

// An address of this many segments: "one.two.three", then "/s" repeatedly.
std::string addressOfLevels(std::size_t levels) {
  std::string address = "one.two.three";
  for (std::size_t k = 2; k <= levels; ++k) address += "/s";
  return address;
}

TEST(ValidateAddress, AcceptsAHostWithTwoDots) {
  EXPECT_TRUE(isValid("one.two.three"));
  EXPECT_TRUE(isValid("http://one.two.three/"));
  EXPECT_TRUE(isValid("https://one.two.three/a/b/"));
  EXPECT_TRUE(isValid("one.two.three/x"));
  EXPECT_TRUE(isValid("one.two.three.four"));
}

TEST(ValidateAddress, RefusesAHostWithFewerDots) {
  EXPECT_FALSE(isValid(""));
  EXPECT_FALSE(isValid("localhost"));
  EXPECT_FALSE(isValid("two.three"));
  EXPECT_FALSE(isValid("http://two.three"));
  EXPECT_FALSE(isValid("http://two.three/a.b.c"));
  EXPECT_FALSE(isValid("http://"));
  EXPECT_FALSE(isValid("https:///one.two.three"));
}

TEST(ValidateAddress, RefusesADotThatIsTheLastCharacter) {
  EXPECT_FALSE(isValid("one."));
  EXPECT_FALSE(isValid("one.two."));
  EXPECT_FALSE(isValid("http://one.two./page"));
  EXPECT_FALSE(isValid("."));
  EXPECT_FALSE(isValid(".."));
  EXPECT_FALSE(isValid("one.."));
}

TEST(ValidateAddress, LooksNoFurtherThanTheSecondDot) {
  EXPECT_TRUE(isValid("one..two"));
  EXPECT_TRUE(isValid("one.two.three."));
  EXPECT_TRUE(isValid("one.two.."));
  EXPECT_TRUE(isValid("..x"));
}

TEST(ValidateAddress, NotesTheScheme) {
  EXPECT_EQ(flagOf("http://one.two.three/"), 'N');
  EXPECT_EQ(flagOf("https://one.two.three/"), 'S');
  EXPECT_EQ(flagOf("ftp://one.two.three/pub"), 'F');
  EXPECT_EQ(flagOf("one.two.three/x"), 'U');
}

TEST(ValidateAddress, NotesTheSchemeOfAnInvalidAddress) {
  EXPECT_EQ(flagOf("http://two.three"), 'N');
  EXPECT_EQ(flagOf("https://localhost"), 'S');
  EXPECT_EQ(flagOf("about:blank"), 'U');
  EXPECT_EQ(flagOf(""), 'U');
}

TEST(ValidateAddress, NeverAcceptsFtp) {
  EXPECT_FALSE(isValid("ftp://one.two.three"));
  EXPECT_FALSE(isValid("ftp://one.two.three/pub"));
}

TEST(ValidateAddress, SeesASchemeOnlyInFront) {
  EXPECT_EQ(flagOf("one.two.three/http://x"), 'U');
  EXPECT_EQ(flagOf(" http://one.two.three"), 'U');
  EXPECT_EQ(flagOf("one.two.three/ftp://x"), 'U');
  EXPECT_TRUE(isValid("one.two.three/ftp://x"));
}

TEST(ValidateAddress, CountsLetterCaseInTheScheme) {
  EXPECT_EQ(flagOf("HTTP://one.two.three"), 'U');
  EXPECT_FALSE(isValid("HTTP://one.two.three"));
  EXPECT_EQ(flagOf("FTP://one.two.three"), 'U');
}

TEST(ValidateAddress, TakesHttpsBehindHttpForTheScheme) {
  EXPECT_EQ(flagOf("http://https://one.two.three"), 'S');
  EXPECT_TRUE(isValid("http://https://one.two.three"));
}

TEST(ValidateAddress, LeavesHttpBehindHttpsInTheHost) {
  EXPECT_EQ(flagOf("https://http://one.two.three"), 'S');
  EXPECT_FALSE(isValid("https://http://one.two.three"));
}

TEST(StoredAddress, LosesTheSchemeAndOneSlash) {
  EXPECT_EQ(storedAddress("http://one.two.three/"), "one.two.three");
  EXPECT_EQ(storedAddress("https://one.two.three/a/b/"), "one.two.three/a/b");
  EXPECT_EQ(storedAddress("http://one.two.three/a"), "one.two.three/a");
}

TEST(StoredAddress, LosesOnlyOneSlash) {
  EXPECT_EQ(storedAddress("http://one.two.three//"), "one.two.three/");
}

TEST(StoredAddress, KeepsAnAddressWithoutScheme) {
  EXPECT_EQ(storedAddress("one.two.three/x"), "one.two.three/x");
  EXPECT_EQ(storedAddress("one.two.three/x/"), "one.two.three/x");
}

TEST(StoredAddress, KeepsEveryOtherScheme) {
  EXPECT_EQ(storedAddress("ftp://one.two.three/pub"), "ftp://one.two.three/pub");
  EXPECT_EQ(storedAddress("HTTP://one.two.three"), "HTTP://one.two.three");
}

TEST(StoredAddress, LosesItsBeginningForASchemeAnywhere) {
  EXPECT_EQ(storedAddress("one.two.three/?to=http://four"), ".three/?to=http://four");
  EXPECT_EQ(storedAddress("one.two.three/?to=https://four"), "three/?to=https://four");
}

TEST(StoredAddress, LosesBothLengthsWhenBothSchemesOccur) {
  EXPECT_EQ(storedAddress("http://one.two.three/?to=https://four"), "three/?to=https://four");
  EXPECT_EQ(storedAddress("https://one.two.three/?to=http://four"), ".three/?to=http://four");
}

TEST(StoredAddress, LosesALengthOnceHoweverOftenTheSchemeOccurs) {
  EXPECT_EQ(storedAddress("http://one.two.three/http://http://"), "one.two.three/http://http:/");
}

TEST(StoredAddress, SeesASchemeThatTheTrailingSlashBelongsTo) {
  EXPECT_EQ(storedAddress("one.two.three/http://"), ".three/http:/");
}

TEST(StoredAddress, IsEmptyWhenTheSchemesAreLongerThanTheRest) {
  EXPECT_EQ(storedAddress("http://"), "");
  EXPECT_EQ(storedAddress("https://"), "");
  EXPECT_EQ(storedAddress(""), "");
  EXPECT_EQ(storedAddress("/"), "");
}

TEST(AddressLevels, AreTheSegmentsOfTheAddress) {
  const std::string address = "one.two.three/dir/page.html";
  const AddressLevels levels = addressLevels(address);
  ASSERT_EQ(levels.count(), 3U);
  EXPECT_EQ(levels.address(), "one.two.three/dir/page.html");
  EXPECT_EQ(levelKey(levels, 1), "one.two.three");
  EXPECT_EQ(levelKey(levels, 2), "one.two.three/dir");
  EXPECT_EQ(levelKey(levels, 3), "one.two.three/dir/page.html");
  EXPECT_EQ(levelText(levels, 1), "one.two.three");
  EXPECT_EQ(levelText(levels, 2), "dir");
  EXPECT_EQ(levelText(levels, 3), "page.html");
}

TEST(AddressLevels, AreTheHostAloneWithoutASlash) {
  const AddressLevels levels = addressLevels("one.two.three");
  ASSERT_EQ(levels.count(), 1U);
  EXPECT_EQ(levelKey(levels, 1), "one.two.three");
  EXPECT_EQ(levelText(levels, 1), "one.two.three");
}

TEST(AddressLevels, KeepEmptySegments) {
  const AddressLevels levels = addressLevels("one.two.three//a/");
  ASSERT_EQ(levels.count(), 4U);
  EXPECT_EQ(levelText(levels, 2), "");
  EXPECT_EQ(levelKey(levels, 2), "one.two.three/");
  EXPECT_EQ(levelText(levels, 3), "a");
  EXPECT_EQ(levelKey(levels, 3), "one.two.three//a");
  EXPECT_EQ(levelText(levels, 4), "");
  EXPECT_EQ(levelKey(levels, 4), "one.two.three//a/");
}

TEST(AddressLevels, KeepAnEmptyHost) {
  const AddressLevels levels = addressLevels("/a");
  ASSERT_EQ(levels.count(), 2U);
  EXPECT_EQ(levelText(levels, 1), "");
  EXPECT_EQ(levelKey(levels, 1), "");
  EXPECT_EQ(levelText(levels, 2), "a");
  EXPECT_EQ(levelKey(levels, 2), "/a");
}

TEST(AddressLevels, AreOneEmptyLevelForAnEmptyAddress) {
  const AddressLevels levels = addressLevels("");
  ASSERT_EQ(levels.count(), 1U);
  EXPECT_EQ(levelKey(levels, 1), "");
}

TEST(AddressLevels, AreFiftyAtMost) {
  const std::string fifty = addressOfLevels(50);
  const AddressLevels levels = addressLevels(fifty);
  EXPECT_EQ(levels.count(), 50U);
  EXPECT_EQ(levelText(levels, 50), "s");
  EXPECT_EQ(levelKey(levels, 50), fifty);
}

// Copying the levels copies the whole array, and reading an uninitialised element is undefined.
TEST(AddressLevels, InitialiseAllOfTheirMemory) {
  alignas(AddressLevels) std::array<char, sizeof(AddressLevels)> memory;
  memory.fill('\x55');
  new (memory.data()) AddressLevels(addressLevels("one.two.three"));
  const std::string_view bytes(memory.data(), memory.size());
  EXPECT_EQ(bytes.find(std::string(8, '\x55')), std::string_view::npos);
}

TEST(AddressLevels, FailForAnAddressLongerThan65535Characters) {
  EXPECT_EQ(addressLevels(std::string(65'535, 'a')).count(), 1U);
  EXPECT_EQ(failureNumberOf([] { return addressLevels(std::string(65'536, 'a')).count(); }), 9);
}

TEST(AddressLevels, FailAtThe51stSegment) {
  EXPECT_EQ(failureNumberOf([] { return addressLevels(addressOfLevels(51)).count(); }), 9);
  EXPECT_EQ(failureNumberOf([] { return addressLevels(addressOfLevels(50) + "/").count(); }), 9);
  EXPECT_EQ(failureNumberOf([] { return addressLevels(std::string(300, '/')).count(); }), 9);
}

TEST(SchemePrefix, IsThatOfTheFlag) {
  EXPECT_EQ(schemePrefix('N'), "http://");
  EXPECT_EQ(schemePrefix('S'), "https://");
  EXPECT_EQ(schemePrefix('F'), "ftp://");
}

TEST(SchemePrefix, IsHttpWhereNoSchemeIsKnown) {
  for (const char flag : {'U', '\0', 'n', 's'}) EXPECT_EQ(schemePrefix(flag), "http://");
}

}  // namespace
}  // namespace quorrix
