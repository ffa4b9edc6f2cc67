#include "platform/windows/firefox_settings.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>

#include "support/temporary_folder.h"

namespace quorrix {
namespace {

constexpr const char* kRemembers = "user_pref(\"browser.startup.page\", 3);\n";
constexpr const char* kNeverRemembers = "user_pref(\"browser.privatebrowsing.autostart\", true);\n";

class FirefoxSettingsTest : public testing::Test {
 protected:
  FirefoxSettingsTest() {
    std::ofstream(folder_ / "profiles.ini")
        << "[Profile0]\r\nName=default\r\nIsRelative=1\r\nPath=Profiles/one\r\n"
        << "[Profile1]\r\nName=other\r\nIsRelative=1\r\nPath=Profiles/two\r\n";
    for (const char* const name : {"one", "two"}) {
      std::filesystem::create_directories(profile(name));
      std::ofstream(profile(name) / "parent.lock");
    }
  }
  ~FirefoxSettingsTest() override {
    for (const HANDLE lock : locks_) ::CloseHandle(lock);
  }

  Path profile(const char* name) const { return folder_.path() / "Profiles" / name; }

  void givenSettings(const char* name, const char* lines) {
    std::ofstream(profile(name) / "prefs.js") << "// Mozilla User Preferences\n" << lines;
  }

  // As a running Firefox does.
  void use(const char* name) {
    locks_.push_back(::CreateFileW((profile(name) / "parent.lock").c_str(),
                                   GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                                   nullptr));
  }

  std::optional<bool> remembers(const std::vector<std::string>& arguments = {"firefox.exe"}) const {
    return firefoxRemembersHistory(arguments, folder_.path());
  }

  test::TemporaryFolder folder_;
  std::vector<HANDLE> locks_;
};

TEST_F(FirefoxSettingsTest, AreThoseOfTheProfileInUse) {
  givenSettings("one", kNeverRemembers);
  givenSettings("two", kRemembers);
  use("two");
  EXPECT_EQ(remembers(), true);
}

TEST_F(FirefoxSettingsTest, SayThatHistoryIsNeverRemembered) {
  givenSettings("one", kNeverRemembers);
  use("one");
  EXPECT_EQ(remembers(), false);
}

TEST_F(FirefoxSettingsTest, CountTheStrictestOfSeveralProfilesInUse) {
  givenSettings("one", kRemembers);
  givenSettings("two", kNeverRemembers);
  use("one");
  use("two");
  EXPECT_EQ(remembers(), false);
}

TEST_F(FirefoxSettingsTest, AreUnknownWithoutAProfileInUseOrItsSettings) {
  EXPECT_EQ(remembers(), std::nullopt);
  givenSettings("one", kRemembers);
  EXPECT_EQ(remembers(), std::nullopt);
  use("two");
  EXPECT_EQ(remembers(), std::nullopt);
}

TEST_F(FirefoxSettingsTest, AreThoseOfTheProfileOnTheCommandLine) {
  givenSettings("one", kNeverRemembers);
  givenSettings("two", kRemembers);
  use("two");
  for (const char* const option : {"-profile", "--profile"}) {
    EXPECT_EQ(remembers({"firefox.exe", option, profile("one").string()}), false);
  }
}

TEST_F(FirefoxSettingsTest, ArePrivateWithTheOption) {
  givenSettings("one", kRemembers);
  use("one");
  EXPECT_EQ(remembers({"firefox.exe", "-private"}), false);
  EXPECT_EQ(remembers({"firefox.exe", "--private", "http://one.two.three"}), false);
}

TEST_F(FirefoxSettingsTest, OfAProcessThatIsGoneAreUnknown) {
  EXPECT_EQ(firefoxRemembersHistory(0xFFFF'FFF0), std::nullopt);
}

}  // namespace
}  // namespace quorrix
