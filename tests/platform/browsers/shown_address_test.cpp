#include "platform/browsers/shown_address.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

TEST(NewerAddress, IsNoneWhereTheBarShowsTheLoadedOne) {
  EXPECT_EQ(newerAddress("https://www.one.test/a?b=c", "one.test/a?b=c"), std::nullopt);
  EXPECT_EQ(newerAddress("https://www.one.test/a", "www.one.test/a"), std::nullopt);
  EXPECT_EQ(newerAddress("https://www.one.test/a", "https://www.one.test/a"), std::nullopt);
  EXPECT_EQ(newerAddress("https://www.one.test/", "one.test"), std::nullopt);
  EXPECT_EQ(newerAddress("http://one.test:8080/a", "one.test:8080/a"), std::nullopt);
  EXPECT_EQ(newerAddress("https://one.test/%7Eanna", "one.test/~anna"), std::nullopt);
}

TEST(NewerAddress, IsTheOneThatTheBarShowsInTheFormOfTheLoadedOne) {
  EXPECT_EQ(newerAddress("https://www.one.test/a", "one.test/b?c"), "https://www.one.test/b?c");
  EXPECT_EQ(newerAddress("https://www.one.test/a", "https://www.one.test/b"),
            "https://www.one.test/b");
  EXPECT_EQ(newerAddress("http://one.test:8080/a", "one.test:8080/b"), "http://one.test:8080/b");
  EXPECT_EQ(newerAddress("https://www.one.test/a", "one.test"), "https://www.one.test/");
  EXPECT_EQ(newerAddress("https://one.test/a", "one.test/b?u=http://two.test"),
            "https://one.test/b?u=http://two.test");
}

TEST(NewerAddress, IsNeverOnAnotherHost) {
  EXPECT_EQ(newerAddress("https://www.one.test/a", "two.test/b"), std::nullopt);
  EXPECT_EQ(newerAddress("https://www.one.test/a", "http://www.one.test/b"), std::nullopt);
  EXPECT_EQ(newerAddress("https://www.one.test/a", "one.test:81/b"), std::nullopt);
  EXPECT_EQ(newerAddress("chrome://version", "one.test/b"), std::nullopt);
}

TEST(NewerAddress, IsNoneForWhatCannotBeAnAddress) {
  EXPECT_EQ(newerAddress("https://one.test/a", ""), std::nullopt);
  EXPECT_EQ(newerAddress("https://one.test/a", "one.test/two words"), std::nullopt);
  EXPECT_EQ(newerAddress("https://one.test/caf%C3%A9", "one.test/caf\xC3\xA9"), std::nullopt);
}

}  // namespace
}  // namespace quorrix
