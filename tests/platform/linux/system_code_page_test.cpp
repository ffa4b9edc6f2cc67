#include "platform/system_code_page.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace quorrix {
namespace {

// The tests set the variables of the locale; afterwards they have their old values.
class SystemCodePageTest : public testing::Test {
 protected:
  SystemCodePageTest() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
      const char* const value = std::getenv(name);
      before_[name] = value ? std::optional<std::string>(value) : std::nullopt;
      ::unsetenv(name);
    }
  }

  ~SystemCodePageTest() override {
    for (const auto& [name, value] : before_) {
      ::unsetenv(name.c_str());
      if (value) given(name, *value);
    }
  }

  static void given(const std::string& name, const std::string& value) {
    ::setenv(name.c_str(), value.c_str(), 1);
  }

 private:
  std::map<std::string, std::optional<std::string>> before_;
};

TEST_F(SystemCodePageTest, IsWesternWithoutALocale) { EXPECT_EQ(systemCodePage(), 1252U); }

TEST_F(SystemCodePageTest, FollowsTheLocaleOfCharacters) {
  given("LANG", "pl_PL.UTF-8");
  EXPECT_EQ(systemCodePage(), 1250U);
  given("LC_CTYPE", "el_GR.UTF-8");
  EXPECT_EQ(systemCodePage(), 1253U);
  given("LC_ALL", "ru_RU.UTF-8");
  EXPECT_EQ(systemCodePage(), 1251U);
}

TEST_F(SystemCodePageTest, TakesAnEmptyVariableForAMissingOne) {
  given("LC_ALL", "");
  given("LANG", "th_TH.UTF-8");
  EXPECT_EQ(systemCodePage(), 874U);
}

}  // namespace
}  // namespace quorrix
