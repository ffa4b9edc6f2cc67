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

  std::optional<bool> remembers(const std::vector<std::string>& arguments = {"firefox.exe"},
                                std::size_t processes = 1) const {
    return firefoxRemembersHistory(
        arguments, {.program = folder_ / "program", .profiles = folder_.path()}, processes);
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
  const std::vector<std::string> one = {"firefox.exe", "-profile", profile("one").string()};
  EXPECT_EQ(remembers(one), std::nullopt);  // it uses another one after all
  use("one");
  for (const char* const option : {"-profile", "--profile", "/Profile"}) {
    EXPECT_EQ(remembers({"firefox.exe", option, profile("one").string()}), false);
  }
  EXPECT_EQ(remembers({"firefox.exe", "-profile", profile("two").string()}), true);
}

TEST_F(FirefoxSettingsTest, AreUnknownWithMoreProcessesThanKnownProfiles) {
  givenSettings("one", kRemembers);
  use("one");
  EXPECT_EQ(remembers({"firefox.exe"}, 2), std::nullopt);
}

TEST_F(FirefoxSettingsTest, AreAlsoThoseOfTheUsersOwnFile) {
  givenSettings("one", kRemembers);
  std::ofstream(profile("one") / "user.js")
      << "user_pref( 'browser.privatebrowsing.autostart' , true );\n";
  use("one");
  EXPECT_EQ(remembers(), false);
}

TEST_F(FirefoxSettingsTest, MayBeForcedByFilesBesideTheProgram) {
  givenSettings("one", kRemembers);
  use("one");
  std::filesystem::create_directories(folder_ / "program" / "distribution");
  const Path policies = folder_ / "program" / "distribution" / "policies.json";
  std::ofstream(policies) << "{\"policies\": {\"PrivateBrowsingModeAvailability\": 2}}";
  EXPECT_EQ(remembers(), false);
  std::filesystem::remove(policies);
  EXPECT_EQ(remembers(), true);
  std::ofstream(policies) << "{\"policies\": {\"Preferences\": "
                             "{\"browser.privatebrowsing.autostart\": {\"Value\": true}}}}";
  EXPECT_EQ(remembers(), false);
  std::filesystem::remove(policies);
  const Path config = folder_ / "program" / "mozilla.cfg";
  std::ofstream(config) << "//\nlockPref(\"browser.privatebrowsing.autostart\", true);\n";
  EXPECT_EQ(remembers(), false);
  std::filesystem::remove(config);
  EXPECT_EQ(remembers(), true);
}

TEST_F(FirefoxSettingsTest, MayComeFromAFileWhoseBytesAreShifted) {
  givenSettings("one", kRemembers);
  use("one");
  const Path defaults = folder_ / "program" / "defaults" / "pref";
  std::filesystem::create_directories(defaults);
  std::ofstream(defaults / "channel-prefs.js") << "pref(\"app.update.channel\", \"release\");\n";
  EXPECT_EQ(remembers(), true);
  std::ofstream(defaults / "autoconfig.js") << "pref(\"general.config.filename\", \"a.txt\");\n";
  EXPECT_EQ(remembers(), std::nullopt);
}

TEST_F(FirefoxSettingsTest, MayBeForcedByTheRegistry) {
  constexpr const wchar_t* kKey = L"Software\\Policies\\Mozilla\\Firefox";
  const auto set = [](const std::wstring& json) {
    ::RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"Preferences", REG_SZ, json.c_str(),
                      static_cast<DWORD>((json.size() + 1) * sizeof(wchar_t)));
  };
  const DWORD self = ::GetCurrentProcessId();
  set(L"{\"browser.startup.page\": {\"Value\": 3}}");
  EXPECT_EQ(firefoxRemembersHistory(self, 1), std::nullopt);
  set(L"{\"browser.privatebrowsing.autostart\": {\"Value\": true}}");
  EXPECT_EQ(firefoxRemembersHistory(self, 1), false);
  ::RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, L"Preferences");
  EXPECT_EQ(firefoxRemembersHistory(self, 1), std::nullopt);
}

TEST_F(FirefoxSettingsTest, ArePrivateWithTheOption) {
  givenSettings("one", kRemembers);
  use("one");
  for (const char* const option : {"-private", "--private", "/private", "-Private", "/PRIVATE:x"}) {
    EXPECT_EQ(remembers({"firefox.exe", option, "http://one.two.three"}), false) << option;
  }
  EXPECT_EQ(remembers({"firefox.exe", "http://one.two.three/private"}), true);
}

TEST_F(FirefoxSettingsTest, OfAProcessThatIsGoneAreUnknown) {
  EXPECT_EQ(firefoxRemembersHistory(0xFFFF'FFF0, 1), std::nullopt);
}

}  // namespace
}  // namespace quorrix
