#include "platform/browsers/shown_address.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

namespace quorrix {
namespace {

TEST(CompareWithBar, FindsTheLoadedAddress) {
  for (const auto& [loaded, shown] : {std::pair{"https://www.one.test/a?b=c", "one.test/a?b=c"},
                                      std::pair{"https://www.one.test/a", "www.one.test/a"},
                                      std::pair{"https://www.one.test/a", "https://www.one.test/a"},
                                      std::pair{"https://www.one.test/", "one.test"},
                                      std::pair{"http://one.test:8080/a", "one.test:8080/a"},
                                      std::pair{"https://one.test/%7Eanna", "one.test/~anna"},
                                      std::pair{"https://one.test/caf%C3%A9", "one.test/café"}}) {
    EXPECT_EQ(compareWithBar(loaded, shown), ShownAddress::Same) << shown;
  }
}

TEST(CompareWithBar, FindsANewerAddressOfTheSameHost) {
  for (const auto& [loaded, shown, newer] :
       {std::tuple{"https://www.one.test/a", "one.test/b?c", "https://www.one.test/b?c"},
        std::tuple{"https://www.one.test/a", "https://www.one.test/b", "https://www.one.test/b"},
        std::tuple{"http://one.test:8080/a", "one.test:8080/b", "http://one.test:8080/b"},
        std::tuple{"https://www.one.test/a", "one.test", "https://www.one.test/"},
        std::tuple{"https://one.test/a", "one.test/café", "https://one.test/caf%C3%A9"},
        std::tuple{"https://one.test/a", "one.test/À", "https://one.test/%C3%80"},
        std::tuple{"https://one.test/a", "one.test/b?u=http://two.test",
                   "https://one.test/b?u=http://two.test"}}) {
    EXPECT_EQ(compareWithBar(loaded, shown), ShownAddress::Newer) << shown;
    EXPECT_EQ(newerAddress(loaded, shown), newer);
  }
}

TEST(CompareWithBar, CannotTellAnotherHostOrAnotherText) {
  for (const auto& [loaded, shown] :
       {std::pair{"https://www.one.test/a", "two.test/b"},
        std::pair{"https://www.one.test/a", "http://www.one.test/b"},
        std::pair{"https://www.one.test/a", "one.test:81/b"},
        std::pair{"chrome://version", "one.test/b"}, std::pair{"https://one.test/a", ""},
        std::pair{"https://one.test/a", "one.test/two words"},
        std::pair{"https://xn--bcher-kva.test/a", "bücher.test/a"}}) {
    EXPECT_EQ(compareWithBar(loaded, shown), ShownAddress::Unclear) << shown;
  }
}

}  // namespace
}  // namespace quorrix
