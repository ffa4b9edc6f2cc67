#include "platform/linux/firefox_settings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace quorrix {
namespace {

constexpr const char* kButtonInPlace =
    R"(user_pref("browser.uiCustomization.state", "{\"placements\":{\"widget-overflow-fixed-list\":[],)"
    R"(\"nav-bar\":[\"back-button\",\"urlbar-container\"],)"
    R"(\"TabsToolbar\":[\"firefox-view-button\",\"tabbrowser-tabs\"]},)"
    R"(\"seen\":[\"developer-button\"],\"currentVersion\":20}");)";
constexpr const char* kButtonTakenAway =
    R"(user_pref("browser.uiCustomization.state", "{\"placements\":{\"widget-overflow-fixed-list\":[],)"
    R"(\"nav-bar\":[\"back-button\",\"urlbar-container\"],)"
    R"(\"TabsToolbar\":[\"tabbrowser-tabs\"]},)"
    R"(\"seen\":[\"firefox-view-button\"],\"currentVersion\":20}");)";
constexpr const char* kButtonInTheMenu =
    R"(user_pref("browser.uiCustomization.state", "{\"placements\":{)"
    R"(\"widget-overflow-fixed-list\":[\"firefox-view-button\"],)"
    R"(\"TabsToolbar\":[\"tabbrowser-tabs\"]},\"seen\":[]}");)";
// There, the button is not visible while the bookmarks tool bar is hidden.
constexpr const char* kButtonOnTheBookmarksToolBar =
    R"(user_pref("browser.uiCustomization.state", "{\"placements\":{)"
    R"(\"PersonalToolbar\":[\"firefox-view-button\",\"personal-bookmarks\"],)"
    R"(\"TabsToolbar\":[\"tabbrowser-tabs\"]},\"seen\":[]}");)";
constexpr const char* kNeverRemember = R"(user_pref("browser.privatebrowsing.autostart", true);)";

// Process 7 holds the lock of a profile open.
class FirefoxSettingsTest : public testing::Test {
 protected:
  FirefoxSettingsTest() {
    std::filesystem::create_directories(processes_ / "7" / "fd");
    std::filesystem::create_directories(profile_);
    std::filesystem::create_symlink("/dev/null", processes_ / "7" / "fd" / "0");
    std::filesystem::create_symlink(profile_ / ".parentlock", processes_ / "7" / "fd" / "5");
  }

  std::optional<bool> withSettings(const std::string& lines) {
    std::ofstream(profile_ / "prefs.js") << "// Mozilla User Preferences\n" << lines << '\n';
    return firefoxRemembersHistory(processes_, 7);
  }

  void withArguments(const std::vector<std::string>& arguments) {
    std::ofstream file(processes_ / "7" / "cmdline", std::ios::binary);
    for (const std::string& argument : arguments) file << argument << '\0';
  }

  test::TemporaryFolder folder_;
  Path processes_ = folder_.path() / "proc";
  Path profile_ = folder_.path() / "profile with blanks";
};

TEST_F(FirefoxSettingsTest, RemembersWhenTheUserTookTheButtonAway) {
  EXPECT_EQ(withSettings(kButtonTakenAway), true);
  EXPECT_EQ(withSettings(kButtonInTheMenu), true);
  EXPECT_EQ(withSettings(kButtonOnTheBookmarksToolBar), true);
}

TEST_F(FirefoxSettingsTest, KnowsNothingWhereTheButtonShouldBeThere) {
  EXPECT_EQ(withSettings(kButtonInPlace), std::nullopt);
  EXPECT_EQ(withSettings(""), std::nullopt);
  EXPECT_EQ(withSettings(R"(user_pref("browser.uiCustomization.state", "");)"), std::nullopt);
}

TEST_F(FirefoxSettingsTest, DoesNotRememberWhenItWasStartedWithThePrivateOption) {
  withArguments({"firefox-esr", "--private-window"});
  EXPECT_EQ(withSettings(kButtonTakenAway), true) << "that is one window";
  for (const char* const option : {"--private", "-private"}) {
    withArguments({"firefox-esr", "--new-instance", option, "http://a.test/"});
    EXPECT_EQ(withSettings(kButtonTakenAway), false) << option;
  }
}

TEST_F(FirefoxSettingsTest, DoesNotRememberWhenTheUserSaysSo) {
  EXPECT_EQ(withSettings(std::string(kButtonTakenAway) + '\n' + kNeverRemember), false);
  EXPECT_EQ(withSettings(std::string(kNeverRemember) + '\n' + kButtonTakenAway), false);
}

TEST_F(FirefoxSettingsTest, KnowsNothingWithoutAProfile) {
  EXPECT_EQ(firefoxRemembersHistory(processes_, 7), std::nullopt) << "no settings";
  EXPECT_EQ(firefoxRemembersHistory(processes_, 8), std::nullopt) << "no such process";
  std::filesystem::remove(processes_ / "7" / "fd" / "5");
  EXPECT_EQ(withSettings(kButtonTakenAway), std::nullopt) << "no lock held";
}

TEST_F(FirefoxSettingsTest, KnowsNothingFromAPipeOrAFolder) {
  ASSERT_EQ(::mkfifo((profile_ / "prefs.js").c_str(), 0600), 0);
  EXPECT_EQ(firefoxRemembersHistory(processes_, 7), std::nullopt);
  std::filesystem::remove(profile_ / "prefs.js");
  std::filesystem::create_directory(profile_ / "prefs.js");
  EXPECT_EQ(firefoxRemembersHistory(processes_, 7), std::nullopt);
}

}  // namespace
}  // namespace quorrix
