#include "main_window/desktop_platform.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

std::string preferred(bool hasChosenPlatform, bool hasWaylandDisplay, bool hasX11Display) {
  return preferredPlatform({.hasChosenPlatform = hasChosenPlatform,
                            .hasWaylandDisplay = hasWaylandDisplay,
                            .hasX11Display = hasX11Display});
}

TEST(PreferredPlatform, IsXWaylandOnAWaylandDesktopThatHasIt) {
  EXPECT_EQ(preferred(false, true, true), "xcb;wayland");
}

TEST(PreferredPlatform, IsQtsOwnChoiceOnAnyOtherDesktop) {
  EXPECT_EQ(preferred(false, true, false), "");
  EXPECT_EQ(preferred(false, false, true), "");
  EXPECT_EQ(preferred(false, false, false), "");
}

TEST(PreferredPlatform, LeavesTheUsersChoiceAlone) {
  EXPECT_EQ(preferred(true, true, true), "");
  EXPECT_EQ(preferred(true, true, false), "");
  EXPECT_EQ(preferred(true, false, true), "");
  EXPECT_EQ(preferred(true, false, false), "");
}

std::vector<std::string> argumentsWith(const std::string& platform,
                                       std::vector<std::string> given) {
  std::vector<char*> values;
  for (std::string& value : given) values.push_back(value.data());
  values.push_back(nullptr);
  DesktopArguments arguments(static_cast<int>(given.size()), values.data(), platform);
  EXPECT_EQ(arguments.values()[arguments.count()], nullptr);
  return {arguments.values(), arguments.values() + arguments.count()};
}

using Words = std::vector<std::string>;

TEST(DesktopArguments, HoldThePlatformBehindTheProgramsName) {
  EXPECT_EQ(argumentsWith("xcb;wayland", {"Quorrix"}),
            (Words{"Quorrix", "-platform", "xcb;wayland"}));
}

// If a platform is given twice, the last one counts.
TEST(DesktopArguments, LeaveTheLastWordToTheUser) {
  EXPECT_EQ(argumentsWith("xcb;wayland", {"Quorrix", "-platform", "wayland"}),
            (Words{"Quorrix", "-platform", "xcb;wayland", "-platform", "wayland"}));
}

TEST(DesktopArguments, AreTheProgramsOwnWithoutAPlatform) {
  EXPECT_EQ(argumentsWith("", {"Quorrix", "-style", "fusion"}),
            (Words{"Quorrix", "-style", "fusion"}));
  EXPECT_EQ(argumentsWith("xcb", {}), Words{});
}

TEST(DesktopDirection, IsTheOneOfTheFirstLanguage) {
  for (const char* const language : {"ar-EG", "ar", "fa-IR", "he-IL", "ur-PK", "ckb-IQ"}) {
    EXPECT_EQ(desktopDirection({QLatin1String(language), QStringLiteral("en-US")}), Qt::RightToLeft)
        << language;
  }
  for (const char* const language : {"en-US", "de-DE", "ru-RU", "th-TH", "zh-CN", "C", ""}) {
    EXPECT_EQ(desktopDirection({QLatin1String(language), QStringLiteral("ar-EG")}), Qt::LeftToRight)
        << language;
  }
  EXPECT_EQ(desktopDirection({}), Qt::LeftToRight);
}

#ifndef _WIN32
// The tests set the variables of the locale; afterwards they have their old values.
class LocaleOfDates : public testing::Test {
 protected:
  LocaleOfDates() {
    for (const char* const name : kVariables) {
      before_.push_back(qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray());
      qunsetenv(name);
    }
  }
  ~LocaleOfDates() override {
    for (std::size_t i = 0; i < before_.size(); ++i) {
      before_[i].isNull() ? qunsetenv(kVariables[i]) : qputenv(kVariables[i], before_[i]);
    }
  }

  static constexpr const char* kVariables[] = {"LC_ALL", "LC_TIME", "LANG"};

 private:
  std::vector<QByteArray> before_;
};

TEST_F(LocaleOfDates, IsTheOneOfTimes) {
  qputenv("LANG", "ar_EG.UTF-8");
  EXPECT_EQ(localeOfDates(), QLocale(QLocale::Arabic, QLocale::Egypt));
  qputenv("LC_TIME", "en_GB.UTF-8");
  EXPECT_EQ(localeOfDates(), QLocale(QLocale::English, QLocale::UnitedKingdom));
  qputenv("LC_ALL", "de_DE.UTF-8");
  EXPECT_EQ(localeOfDates(), QLocale(QLocale::German, QLocale::Germany));
  qputenv("LC_ALL", "");
  EXPECT_EQ(localeOfDates(), QLocale(QLocale::English, QLocale::UnitedKingdom));
}

TEST_F(LocaleOfDates, IsTheSystemsIfNoVariableNamesOne) {
  EXPECT_EQ(localeOfDates(), QLocale::system());
}
#endif

}  // namespace
}  // namespace quorrix
