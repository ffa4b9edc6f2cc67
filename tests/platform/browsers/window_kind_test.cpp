#include "platform/browsers/window_kind.h"

#include <gtest/gtest.h>

namespace quorrix {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kNew{0};
constexpr milliseconds kOld{60'000};
constexpr const char* kOrdinary = "A page \xE2\x80\x94 Mozilla Firefox";
constexpr const char* kPrivate = "A page \xE2\x80\x94 Mozilla Firefox Private Browsing";

WindowFindings firefoxWindow(const std::string& name) {
  return {.isFrame = true, .name = name, .hasBars = true, .isMain = true};
}

WindowFindings ordinaryFirefox() {
  WindowFindings findings = firefoxWindow(kOrdinary);
  findings.hasOrdinaryMark = true;
  return findings;
}

WindowFindings neverRemembering() {
  WindowFindings findings = firefoxWindow(kOrdinary);
  findings.canEndSession = true;
  return findings;
}

WindowFindings popup(const std::string& name) {
  return {.isFrame = true, .name = name, .hasBars = true};
}

WindowFindings chromiumWindow(const std::string& name) {
  return {.isFrame = true, .name = name, .hasBars = true, .hasOrdinaryMark = true};
}

class WindowKindsTest : public testing::Test {
 protected:
  WindowKind firefox(const WindowFindings& findings, milliseconds age = kNew) {
    return kinds_.judge(BrowserKind::Firefox, "process", findings, age);
  }
  WindowKind chromium(const WindowFindings& findings, milliseconds age = kNew) {
    return kinds_.judge(BrowserKind::Chromium, "process", findings, age);
  }
  WindowKinds kinds_;
};

TEST_F(WindowKindsTest, TakesAFirefoxWindowWithItsMark) {
  EXPECT_EQ(firefox(ordinaryFirefox()), WindowKind::Ordinary);
}

TEST_F(WindowKindsTest, LeavesDialogsAndWindowsWithoutANameAlone) {
  WindowFindings findings = ordinaryFirefox();
  findings.isFrame = false;
  EXPECT_EQ(firefox(findings, kOld), WindowKind::Other);
  findings = ordinaryFirefox();
  findings.name.clear();
  EXPECT_EQ(firefox(findings, kOld), WindowKind::Unsettled);
}

TEST_F(WindowKindsTest, WaitsForTheFinalNameOfANewWindow) {
  const WindowFindings findings = firefoxWindow(kPrivate);
  EXPECT_EQ(firefox(findings, kNew), WindowKind::Unsettled);
  EXPECT_EQ(firefox(findings, WindowKinds::kNaming), WindowKind::Private);
}

// At first, a private window is called "Mozilla Firefox".
TEST_F(WindowKindsTest, RefusesAPrivateWindowThatHasAnOrdinaryNameYet) {
  WindowFindings findings = firefoxWindow("Mozilla Firefox");
  findings.hasBars = false;
  EXPECT_EQ(firefox(findings), WindowKind::Unsettled);
  findings.hasBars = true;
  findings.hasPrivateMark = true;
  findings.canEndSession = true;
  EXPECT_EQ(firefox(findings), WindowKind::Private);
  EXPECT_EQ(firefox(ordinaryFirefox()), WindowKind::Ordinary) << "the others stay what they are";
}

TEST_F(WindowKindsTest, RefusesAllWindowsOfAFirefoxThatNeverRemembers) {
  EXPECT_EQ(firefox(popup(kOrdinary), kOld), WindowKind::Unsettled);
  EXPECT_EQ(firefox(neverRemembering(), WindowKinds::kNaming - milliseconds(1)),
            WindowKind::Unsettled);
  EXPECT_EQ(firefox(neverRemembering(), WindowKinds::kNaming), WindowKind::Private);
  EXPECT_EQ(firefox(popup(kOrdinary)), WindowKind::Private);
  EXPECT_EQ(firefox(firefoxWindow(kOrdinary)), WindowKind::Private);
}

TEST_F(WindowKindsTest, LetsPopupsFollowTheirProcess) {
  EXPECT_EQ(firefox(popup(kOrdinary), kOld), WindowKind::Unsettled);
  EXPECT_EQ(firefox(ordinaryFirefox()), WindowKind::Ordinary);
  EXPECT_EQ(firefox(popup(kOrdinary)), WindowKind::Ordinary);
  WindowFindings marked = popup(kOrdinary);
  marked.hasPrivateMark = true;
  EXPECT_EQ(firefox(marked), WindowKind::Private);
  EXPECT_EQ(firefox(popup(kPrivate), kOld), WindowKind::Private);
  kinds_.forget("process");
  EXPECT_EQ(firefox(popup(kOrdinary), kOld), WindowKind::Unsettled);
}

// A Firefox that was started with "--private" has such windows.
TEST_F(WindowKindsTest, RefusesAWindowWithItsMarkWhereTheSettingsSayThatItNeverRemembers) {
  WindowFindings findings = ordinaryFirefox();
  findings.remembersHistory = false;
  EXPECT_EQ(firefox(findings), WindowKind::Private);
  EXPECT_EQ(firefox(popup(kOrdinary), kOld), WindowKind::Private);
}

TEST_F(WindowKindsTest, AsksTheSettingsOfAMainWindowThatShowsNoPrivateMark) {
  const auto wants = [](const WindowFindings& findings) {
    return wantsHistory(BrowserKind::Firefox, findings);
  };
  EXPECT_TRUE(wants(firefoxWindow(kOrdinary)));
  EXPECT_FALSE(wants(popup(kOrdinary)));
  EXPECT_TRUE(wants(ordinaryFirefox()));
  EXPECT_FALSE(wants(neverRemembering()));
}

// At first, a private popup is called "Mozilla Firefox" and has no marks.
TEST_F(WindowKindsTest, WaitsForTheFinalNameOfAPopup) {
  EXPECT_EQ(firefox(ordinaryFirefox()), WindowKind::Ordinary);
  EXPECT_EQ(firefox(popup("Mozilla Firefox")), WindowKind::Unsettled);
  EXPECT_EQ(firefox(popup("Mozilla Firefox"), WindowKinds::kNaming), WindowKind::Ordinary);
  WindowFindings main = firefoxWindow("Mozilla Firefox");
  main.remembersHistory = true;
  EXPECT_EQ(firefox(main), WindowKind::Unsettled);
  EXPECT_EQ(firefox(main, WindowKinds::kNaming), WindowKind::Ordinary);
}

TEST_F(WindowKindsTest, TakesAMainWindowWithItsMarkWhateverItIsCalled) {
  WindowFindings findings = ordinaryFirefox();
  findings.name = "Mozilla Firefox";
  EXPECT_EQ(firefox(findings), WindowKind::Ordinary);
}

TEST_F(WindowKindsTest, ReadsNoMainWindowWithoutAMarkBesideOneThatHasIt) {
  EXPECT_EQ(firefox(ordinaryFirefox()), WindowKind::Ordinary);
  EXPECT_EQ(firefox(firefoxWindow(kOrdinary), kOld), WindowKind::Unsettled);
}

// A Firefox that receives "--private" while it runs: its new windows and their popups are
// private, but have ordinary names.
TEST_F(WindowKindsTest, ReadsNoPopupsOnceAWindowCanEndItsSession) {
  EXPECT_EQ(firefox(ordinaryFirefox()), WindowKind::Ordinary);
  EXPECT_EQ(firefox(neverRemembering(), kOld), WindowKind::Private);
  EXPECT_EQ(firefox(popup(kOrdinary), kOld), WindowKind::Private);
  EXPECT_EQ(firefox(ordinaryFirefox()), WindowKind::Ordinary) << "it has its own mark";
}

TEST_F(WindowKindsTest, ReadsAWindowWithoutAMarkOnlyWhereTheSettingsSayThatItRemembers) {
  WindowFindings findings = firefoxWindow(kOrdinary);
  EXPECT_EQ(firefox(findings, kOld), WindowKind::Unsettled);
  EXPECT_EQ(firefox(popup(kOrdinary), kOld), WindowKind::Unsettled);
  findings.remembersHistory = true;
  EXPECT_EQ(firefox(findings), WindowKind::Ordinary);
  EXPECT_EQ(firefox(popup(kOrdinary)), WindowKind::Ordinary);
  kinds_.forget("process");
  findings.remembersHistory = false;
  EXPECT_EQ(firefox(findings), WindowKind::Private);
}

TEST_F(WindowKindsTest, TakesAChromiumWindowWithItsMark) {
  EXPECT_EQ(chromium(chromiumWindow("A page - Chromium")), WindowKind::Ordinary);
  EXPECT_EQ(chromium(chromiumWindow("A page - Chromium - Work")), WindowKind::Ordinary);
}

TEST_F(WindowKindsTest, RefusesAChromiumWindowWithAPrivateMarkWhateverItsName) {
  WindowFindings findings = chromiumWindow("A page - Chromium");
  findings.hasOrdinaryMark = false;
  findings.hasPrivateMark = true;
  EXPECT_EQ(chromium(findings), WindowKind::Private);
}

TEST_F(WindowKindsTest, RefusesAChromiumWindowWithAPrivateName) {
  EXPECT_EQ(chromium(popup("A page - Chromium (Incognito)"), kOld), WindowKind::Private);
  EXPECT_NE(chromium(chromiumWindow("A page - Chromium (Guest)"), kOld), WindowKind::Ordinary);
}

TEST_F(WindowKindsTest, WaitsForTheBarsOfAChromiumThatIsNotAwakeYet) {
  WindowFindings findings = popup("A page - Chromium");
  findings.hasBars = false;
  EXPECT_EQ(chromium(findings, kOld), WindowKind::Unsettled);
  findings.hasBars = true;
  EXPECT_EQ(chromium(findings), WindowKind::Ordinary) << "a popup";
}

TEST(JudgeGnomeWeb, TakesTheWindowsOfTheProcessThatOwnsTheName) {
  const WindowFindings findings{.isFrame = true, .name = "A page"};
  EXPECT_EQ(judgeGnomeWeb(findings, 7, 7, kNew), WindowKind::Ordinary);
  EXPECT_EQ(judgeGnomeWeb(findings, 7, std::nullopt, kOld), WindowKind::Unsettled);
  EXPECT_EQ(judgeGnomeWeb(findings, 0, 0, kOld), WindowKind::Unsettled);
  EXPECT_EQ(judgeGnomeWeb(findings, 7, 8, kNew), WindowKind::Unsettled);
  EXPECT_EQ(judgeGnomeWeb(findings, 7, 8, kOld), WindowKind::Private);
  EXPECT_EQ(judgeGnomeWeb(findings, 7, 0, kOld), WindowKind::Private);
  EXPECT_EQ(judgeGnomeWeb({}, 7, 7, kNew), WindowKind::Other);
}

}  // namespace
}  // namespace quorrix
