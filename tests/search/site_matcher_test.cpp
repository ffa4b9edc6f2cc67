#include "search/site_matcher.h"

#include <gtest/gtest.h>

#include "support/code_pages.h"
#include "support/failure_number.h"
#include "support/site_record_bytes.h"

namespace quorrix {
namespace {

TEST(SiteMatcher, ReadsNoDateIfNothingCanMatch) {
  const std::string record = test::siteRecord("www.garden.example", 'N', "yesterday~");
  const SearchCriteria emptyText{UserSearchType::Url, "", ""};
  SiteMatcher matcher(test::westernCodePage(), emptyText);
  EXPECT_FALSE(matcher.canMatch());
  EXPECT_FALSE(matcher.matches(record));
  const SearchCriteria otherText{UserSearchType::Url, "mill", ""};
  SiteMatcher other(test::westernCodePage(), otherText);
  EXPECT_EQ(test::failureNumberOf([&] { return other.matches(record); }), 13);
}

TEST(SiteMatcher, MatchesAnUnvisitedAddressByItsTextOnly) {
  const auto matches = [](const SearchCriteria& criteria) {
    return SiteMatcher(test::westernCodePage(), criteria).matchesUnvisited("www.garden.example");
  };
  EXPECT_TRUE(matches({UserSearchType::Url, "GARDEN", ""}));
  EXPECT_FALSE(matches({UserSearchType::Url, "mill", ""}));
  EXPECT_FALSE(matches({UserSearchType::Url, "", ""}));
  EXPECT_FALSE(matches({UserSearchType::Both, "garden", "1/1/00"}));
  EXPECT_FALSE(matches({UserSearchType::Date, "", "1/1/00"}));
}

}  // namespace
}  // namespace quorrix
