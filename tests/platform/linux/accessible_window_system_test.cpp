#include "platform/linux/accessible_window_system.h"

#include <atspi/atspi-constants.h>
#include <dbus/dbus.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/accessible_windows_stage.h"
#include "support/code_pages.h"
#include "support/eventually.h"
#include "support/fake_clock.h"
#include "support/linux/fake_accessible_program.h"
#include "support/linux/fake_browsers.h"
#include "support/linux/test_bus.h"

namespace quorrix {
namespace {

using test::FakeAccessibleProgram;
using test::FakeBrowser;
using test::FakeBrowserWindow;
using test::FakeChromium;
using test::FakeFirefox;
using test::FakeGnomeWeb;
using test::FakeObject;

using test::kLongestPass;
using test::Seen;

class AccessibleWindowSystemTest : public test::AccessibleWindowsStage {};

TEST_F(AccessibleWindowSystemTest, ShowsABrowserAsTheWindowsThatTheScanLooksFor) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("Page", "http://www.a.test/b"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/b"));
  int windows = 0;
  windows_.EnumWindows([&](WindowHandle window) {
    ++windows;
    EXPECT_EQ(textOf(window), "Page \x97 Mozilla Firefox - Netscape");
    EXPECT_EQ(classOf(window), "BrowserFrame");
    EXPECT_EQ(windows_.GetParent(window), kNoWindow);
    const WindowHandle box = windows_.GetWindow(window, WindowRelation::FirstChild);
    EXPECT_EQ(classOf(box), "ComboBox");
    EXPECT_EQ(windows_.GetParent(box), window);
    const WindowHandle edit = windows_.GetWindow(box, WindowRelation::FirstChild);
    EXPECT_EQ(classOf(edit), "Edit");
    EXPECT_EQ(windows_.GetParent(edit), box);
    EXPECT_EQ(textOf(edit), "http://www.a.test/b");
    EXPECT_EQ(windows_.SendMessageA(edit, WindowMessage::GetTextLength, {}), 19U);
    EXPECT_EQ(windows_.GetWindow(edit, WindowRelation::FirstChild), kNoWindow);
    EXPECT_EQ(windows_.GetWindow(edit, WindowRelation::NextSibling), kNoWindow);
    const WindowHandle status = windows_.GetWindow(box, WindowRelation::NextSibling);
    EXPECT_EQ(classOf(status), "msctls_statusbar32");
    EXPECT_EQ(textOf(status), "Done");
    EXPECT_EQ(windows_.GetWindow(status, WindowRelation::NextSibling), kNoWindow);
    return true;
  });
  EXPECT_EQ(windows, 1);
}

TEST_F(AccessibleWindowSystemTest, CopiesNoMoreThanTheBufferHolds) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  windows_.EnumWindows([&](WindowHandle window) {
    const WindowHandle box = windows_.GetWindow(window, WindowRelation::FirstChild);
    std::array<char, 4> four{};
    EXPECT_EQ(windows_.GetClassNameA(box, four), 3U);
    EXPECT_STREQ(four.data(), "Com");
    EXPECT_EQ(windows_.SendMessageA(box, WindowMessage::GetText, four), 3U);
    EXPECT_STREQ(four.data(), "htt");
    std::array<char, 1> one{'x'};
    EXPECT_EQ(windows_.GetWindowTextA(window, one), 0U);
    EXPECT_EQ(one[0], '\0');
    EXPECT_EQ(windows_.GetWindowTextA(window, {}), 0U);
    return true;
  });
}

TEST_F(AccessibleWindowSystemTest, DropsTheMiddleOfALongTitle) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("The beginning of a long title", "http://a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  windows_.EnumWindows([&](WindowHandle window) {
    std::array<char, 23> buffer{};
    EXPECT_EQ(windows_.GetWindowTextA(window, buffer), 22U);
    EXPECT_STREQ(buffer.data(), "The beginni - Netscape");
    return true;
  });
}

TEST_F(AccessibleWindowSystemTest, ReportsAVisitInOnePass) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  EXPECT_EQ(visitsIn(20), 0);
  browser.load("/one", "/one/next", "http://www.b.test/c");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/c"), "Connect: www.b.test");
  EXPECT_EQ(visitsIn(20), 0);
}

TEST_F(AccessibleWindowSystemTest, ReportsAReload) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  EXPECT_EQ(visitsIn(10), 0);
  browser.load("/one", "/one/again", "http://a.test/");
  EXPECT_TRUE(reportsAVisit());
  EXPECT_EQ(visitsIn(20), 0);
}

TEST_F(AccessibleWindowSystemTest, FollowsAnAddressThatAScriptPushesInChromium) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://www.a.test/"));
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
  browser.push("/one", "http://www.a.test/pushed");
  EXPECT_EQ(statusWhenSeen("http://www.a.test/pushed"), "Connect: www.a.test");
  EXPECT_EQ(visitsIn(20), 0);
}

TEST_F(AccessibleWindowSystemTest, TakesTheDocumentsAddressWhereChromiumShowsNoOther) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://www.a.test/"));
  browser.program().remove("/one/bar");
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
}

TEST_F(AccessibleWindowSystemTest, TakesNoAddressOfAPageThatChromiumCouldNotGet) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://www.a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser.load("/one", "/one/error", "chrome-error://chromewebdata/");
  browser.push("/one", "http://dead.test/");
  EXPECT_EQ(visitsIn(30), 0);
  EXPECT_EQ(pass().address, "");
}

TEST_F(AccessibleWindowSystemTest, TakesNoAddressOfAPageThatFirefoxCouldNotGet) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://www.a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  for (const auto& [attribute, value] :
       {std::pair{"tag", "net-error-card"}, std::pair{"id", "netErrorButtonContainer"}}) {
    const std::string document = std::string("/one/error") + (attribute[0] == 't' ? "1" : "2");
    FakeObject part;
    part.attributes = {{attribute, value}};
    browser.program().set(document + "/part", part);
    FakeObject page;
    page.role = ATSPI_ROLE_DOCUMENT_WEB;
    page.name = "Problem loading page";
    page.addressAttribute = "DocURL";
    page.address = "http://dead.test/";
    page.children = {document + "/part"};
    browser.program().set(document, page);
    FakeObject tab;
    tab.role = ATSPI_ROLE_INTERNAL_FRAME;
    tab.children = {document};
    browser.program().set("/one/browser", tab);
    EXPECT_EQ(visitsIn(30), 0) << attribute;
    EXPECT_EQ(pass().address, "") << attribute;
  }
}

// A document that never gets any content counts as a page after two seconds.
TEST_F(AccessibleWindowSystemTest, ReportsAReloadOfAnEmptyPageOfFirefox) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://www.a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  for (const auto* const document : {"/one/empty", "/one/emptyAgain"}) {
    FakeObject page;
    page.role = ATSPI_ROLE_DOCUMENT_WEB;
    page.addressAttribute = "DocURL";
    page.address = "http://empty.test/";
    browser.program().set(document, page);
    FakeObject tab;
    tab.role = ATSPI_ROLE_INTERNAL_FRAME;
    tab.children = {document};
    browser.program().set("/one/browser", tab);
    EXPECT_TRUE(reportsAVisit()) << document;
    EXPECT_EQ(visitsIn(20), 0) << document;
  }
}

TEST_F(AccessibleWindowSystemTest, ReadsTheHalfOfASplitViewThatIsInUse) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://www.a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser.split("/one", "/one/second", "http://www.b.test/", false);
  EXPECT_EQ(visitsIn(20), 0);
  browser.split("/one", "/one/second", "http://www.b.test/", true);
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
  browser.split("/one", "/one/third", "http://www.c.test/", true);
  EXPECT_EQ(statusWhenSeen("http://www.c.test/"), "Connect: www.c.test");
  browser.split("/one", "/one/third", "http://www.c.test/", false);
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsThePageBesideASidePanelOfChromium) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://www.a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser.openSidePanel("/one");
  EXPECT_EQ(visitsIn(20), 0);
  browser.push("/one", "http://www.a.test/pushed");
  EXPECT_EQ(statusWhenSeen("http://www.a.test/pushed"), "Connect: www.a.test");
  browser.chooseTab("/one", "/one/second", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
  EXPECT_EQ(visitsIn(20), 0);
  browser.load("/one", "/one/next", "http://www.c.test/");
  EXPECT_EQ(statusWhenSeen("http://www.c.test/"), "Connect: www.c.test");
  EXPECT_EQ(visitsIn(20), 0);
}

TEST_F(AccessibleWindowSystemTest, ReadsThePageBesideASidePanelThatWasOpenBefore) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://www.a.test/"));
  browser.openSidePanel("/one");
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
  EXPECT_EQ(visitsIn(20), 0);
}

TEST_F(AccessibleWindowSystemTest, ReadsTheHalfInUseBesideASidePanel) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://www.a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser.openSidePanel("/one");
  browser.split("/one", "/one/second", "http://www.b.test/", true);
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
  browser.split("/one", "/one/second", "http://www.b.test/", false);
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
}

TEST_F(AccessibleWindowSystemTest, FollowsTheSelectedTabOfFirefox) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  const auto pane = [&](const std::string& path, bool isSelected) {
    FakeObject object;
    object.role = ATSPI_ROLE_SCROLL_PANE;
    object.attributes = {{"class", isSelected ? "browserSidebarContainer deck-selected"
                                              : "browserSidebarContainer"}};
    object.children = {path + "/tools", path + "/browser"};
    browser.program().set(path, object);
  };
  // The developer tools are a page as well.
  FakeObject toolsPage;
  toolsPage.addressAttribute = "DocURL";
  toolsPage.address = "about:devtools-toolbox";
  browser.program().set("/two/tools/page", toolsPage);
  FakeObject tools;
  tools.role = ATSPI_ROLE_INTERNAL_FRAME;
  tools.children = {"/two/tools/page"};
  browser.program().set("/two/tools", tools);
  pane("/two", true);
  browser.load("/two", "/two/page", "http://b.test/");
  FakeObject first;
  first.role = ATSPI_ROLE_SCROLL_PANE;
  first.attributes = {{"class", "browserSidebarContainer"}};
  first.children = {"/one/browser"};
  browser.program().set("/one/pane", first);
  FakeObject panels;
  panels.role = ATSPI_ROLE_PANEL;
  panels.attributes = {{"id", "tabbrowser-tabpanels"}};
  panels.children = {"/one/pane", "/two"};
  browser.program().set("/one/panels", panels);
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsThePageOfGnomeWebFromAnotherProcess) {
  setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
  FakeGnomeWeb browser(bus_.address(), FakeBrowserWindow::Mark::Ordinary);
  browser.show("/one", {.name = "A", .address = "http://www.a.test/"});
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
  EXPECT_EQ(visitsIn(20), 0);
  browser.load("/one", "/one/again", "http://www.a.test/");
  EXPECT_TRUE(reportsAVisit());
  EXPECT_EQ(visitsIn(20), 0);
  browser.load("/one", "/one/next", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
}

TEST_F(AccessibleWindowSystemTest, FollowsTheSelectedTabOfGnomeWeb) {
  setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
  FakeGnomeWeb browser(bus_.address(), FakeBrowserWindow::Mark::Ordinary);
  browser.show("/one", {.name = "A", .address = "http://www.a.test/"});
  browser.load("/tab/one", "/tab/one/page", "http://www.b.test/");
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser.chooseTab("/one", 2);
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
  browser.chooseTab("/one", 1);
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsThePageThatANewTabOfGnomeWebGetsAtOnce) {
  setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
  FakeGnomeWeb browser(bus_.address(), FakeBrowserWindow::Mark::Ordinary);
  browser.show("/one", {.name = "A", .address = "http://www.a.test/"});
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser.openEmptyTab("/one");
  EXPECT_EQ(visitsIn(35), 0);
  browser.load("/tab/one", "/tab/one/page", "http://www.b.test/");
  browser.chooseTab("/one", 2);
  EXPECT_EQ(visitsIn(3), 1);
  EXPECT_EQ(pass().address, "http://www.b.test/");

  browser.openEmptyTab("/one");
  EXPECT_EQ(visitsIn(35), 0);
  browser.chooseTab("/one", 1);
  EXPECT_EQ(visitsIn(3), 1);
  EXPECT_EQ(pass().address, "http://www.a.test/");
}

TEST_F(AccessibleWindowSystemTest, ReadsThePageThatGnomeWebGoesBackTo) {
  setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
  FakeGnomeWeb browser(bus_.address(), FakeBrowserWindow::Mark::Ordinary);
  browser.show("/one", {.name = "A", .address = "http://www.a.test/"});
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser.loadElsewhere("/one", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
  browser.goBack("/one", "/one/back", "http://www.a.test/");
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
  EXPECT_EQ(visitsIn(20), 0);
  browser.load("/one", "/one/again", "http://www.a.test/");
  EXPECT_TRUE(reportsAVisit());
  EXPECT_EQ(visitsIn(20), 0);
  browser.loadElsewhere("/one", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
}

TEST_F(AccessibleWindowSystemTest, ShowsNoWindowOfAnIncognitoGnomeWebAndAsksItForNoPage) {
  setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
  FakeGnomeWeb incognito(bus_.address(), FakeBrowserWindow::Mark::Private);
  incognito.show("/one", {.name = "A", .address = "http://www.a.test/", .isActive = true});
  list({&incognito});
  for (int i = 0; i < 60; ++i) EXPECT_TRUE(pass().titles.empty());
  FakeGnomeWeb ordinary(bus_.address(), FakeBrowserWindow::Mark::Ordinary);
  ordinary.show("/one", {.name = "B", .address = "http://www.b.test/"});
  list({&incognito, &ordinary});
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
  EXPECT_EQ(pass().titles, std::vector<std::string>{"B - Netscape"});
  EXPECT_TRUE(incognito.pages().takeCalls().empty());
}

TEST_F(AccessibleWindowSystemTest, ReadsThePageOnceItHasADocument) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  browser.program().remove("/one/page");
  list({&browser});
  EXPECT_TRUE(test::eventually([&] { return pass().titles.size() == 1; }));
  EXPECT_EQ(pass().address, "");
  browser.load("/one", "/one/page", "http://a.test/");
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
}

TEST_F(AccessibleWindowSystemTest, PutsTheActiveWindowFirstAndKeepsItThere) {
  FakeFirefox first(bus_.address());
  FakeChromium second(bus_.address());
  first.show("/one", firefoxWindow("1", "http://a.test/", true));
  second.show("/one", chromiumWindow("2", "http://b.test/"));
  list({&first, &second});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  first.show("/one", firefoxWindow("1", "http://a.test/"));
  second.show("/one", chromiumWindow("2", "http://b.test/", true));
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
  second.show("/one", chromiumWindow("2", "http://b.test/"));
  EXPECT_EQ(visitsIn(10), 0);
  EXPECT_EQ(pass().address, "http://b.test/");
  first.show("/one", firefoxWindow("1", "http://a.test/", true));
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsNoneOfSeveralWindowsUntilOneIsUsed) {
  FakeFirefox first(bus_.address());
  FakeChromium second(bus_.address());
  first.show("/one", firefoxWindow("1", "http://a.test/"));
  second.show("/one", chromiumWindow("2", "http://b.test/"));
  list({&first, &second});
  for (int i = 0; i < 20; ++i) EXPECT_EQ(pass().address, "");
  second.show("/one", chromiumWindow("2", "http://b.test/", true));
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsTheTopmostOfSeveralUnusedWindows) {
  FakeFirefox first(bus_.address());
  FakeChromium second(bus_.address());
  first.show("/one", firefoxWindow("1", "http://a.test/"));
  // The window titles of the desktop lack the profile.
  second.show("/one", {.name = "2 - Chromium - Work", .address = "http://b.test/"});
  list({&first, &second});
  stack_ = std::nullopt;
  for (int i = 0; i < 10; ++i) EXPECT_EQ(pass().address, "") << "not known yet";
  stack_ = {"Quorrix", "2 - Chromium", "Editor", "1 \xE2\x80\x94 Mozilla Firefox"};
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
  // Once the order is known, only use changes it.
  stack_ = {"1 \xE2\x80\x94 Mozilla Firefox", "2 - Chromium"};
  EXPECT_EQ(visitsIn(10), 0);
}

// Chromium lists two hidden frames for each window.
TEST_F(AccessibleWindowSystemTest, ReadsTheActiveOneOfFiftyWindows) {
  FakeFirefox browser(bus_.address());
  for (int i = 0; i < 150; ++i) {
    const std::string number = std::to_string(100 + i);
    if (i % 3 > 0) {
      browser.show("/w" + number, {});
    } else {
      browser.show("/w" + number, firefoxWindow(number, "http://a.test/" + number, i == 147));
    }
  }
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://a.test/247"), "Connect: a.test");
  browser.show("/w247", firefoxWindow("247", "http://a.test/247"));
  browser.show("/w100", firefoxWindow("100", "http://a.test/100", true));
  EXPECT_EQ(statusWhenSeen("http://a.test/100"), "Connect: a.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsNoWindowOfABrowserThatListsTooMany) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  FakeObject root;
  root.children.push_back("/one");
  for (int i = 0; i < 300; ++i) root.children.push_back("/other/w" + std::to_string(i));
  browser.program().set(FakeAccessibleProgram::kRoot, root);
  EXPECT_TRUE(test::eventually([&] { return pass().titles.empty(); }));
  root.children.pop_back();
  browser.program().set(FakeAccessibleProgram::kRoot, root);
  static_cast<void>(statusWhenSeen("http://a.test/"));
}

TEST_F(AccessibleWindowSystemTest, TakesNoOtherProgramsTitleForThatOfABrowser) {
  FakeFirefox first(bus_.address());
  FakeChromium second(bus_.address());
  first.show("/one", firefoxWindow("News of today", "http://a.test/"));
  second.show("/one", chromiumWindow("2", "http://b.test/"));
  list({&first, &second});
  stack_ = {"News", "2 - Chromium", "News of today \xE2\x80\x94 Mozilla Firefox"};
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
  EXPECT_EQ(visitsIn(20), 0);
}

TEST_F(AccessibleWindowSystemTest, ReadsTheTopmostWindowBesideAProgramThatNeverAnswers) {
  FakeAccessibleProgram never(bus_.address());
  FakeFirefox first(bus_.address());
  FakeChromium second(bus_.address());
  first.show("/one", firefoxWindow("1", "http://a.test/"));
  second.show("/one", chromiumWindow("2", "http://b.test/"));
  list({&first, &second}, {&never});
  stack_ = {"2 - Chromium", "1 \xE2\x80\x94 Mozilla Firefox"};
  never.freeze();
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
  // The interval between passes is the same as without that program.
  for (int i = 0; i < 30; ++i) static_cast<void>(pass());
  EXPECT_EQ(windows_.timeToNextPass(), WindowSystem::kUsualWait);
  never.thaw();
}

TEST_F(AccessibleWindowSystemTest, TrustsNoStackThatLacksAWindow) {
  FakeFirefox first(bus_.address());
  FakeChromium second(bus_.address());
  first.show("/one", firefoxWindow("1", "http://a.test/"));
  second.show("/one", chromiumWindow("2", "http://b.test/"));
  list({&first, &second});
  stack_ = {"2 - Chromium"};
  EXPECT_EQ(visitsIn(20), 0);
}

TEST_F(AccessibleWindowSystemTest, FindsTheOrderAgainWhenTrackingStartsAgain) {
  FakeFirefox first(bus_.address());
  FakeChromium second(bus_.address());
  first.show("/one", firefoxWindow("1", "http://a.test/"));
  second.show("/one", chromiumWindow("2", "http://b.test/"));
  list({&first, &second});
  stack_ = {"1 \xE2\x80\x94 Mozilla Firefox", "2 - Chromium"};
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  stack_ = {"2 - Chromium", "1 \xE2\x80\x94 Mozilla Firefox"};
  windows_.prepareForTracking();
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, TakesNoAnswerFromBeforeTrackingStarted) {
  FakeFirefox left(bus_.address());
  FakeChromium used(bus_.address());
  left.show("/one", firefoxWindow("A", "http://a.test/", true));
  used.show("/one", chromiumWindow("B", "http://b.test/"));
  list({&left, &used});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  // The answer arrives after the pass that asked for it and before the next one.
  left.program().setAnswerTime(std::chrono::milliseconds(40));
  static_cast<void>(left.program().takeCalls());
  static_cast<void>(pass());
  EXPECT_TRUE(test::eventually([&] { return !left.program().takeCalls().empty(); }));
  left.program().setAnswerTime({});
  left.show("/one", firefoxWindow("A", "http://a.test/"));
  stack_ = {"B - Chromium", "A \xE2\x80\x94 Mozilla Firefox"};
  windows_.prepareForTracking();
  Seen seen;
  EXPECT_TRUE(test::eventually([&] {
    seen = pass();
    return !seen.address.empty();
  }));
  EXPECT_EQ(seen.address, "http://b.test/");
}

TEST_F(AccessibleWindowSystemTest, ReadsAWindowThatOpensLater) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("1", "http://a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  browser.show("/one", firefoxWindow("1", "http://a.test/"));
  browser.show("/two", firefoxWindow("2", "http://b.test/", true));
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
  browser.close("/two");
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
}

// --- what is never shown ---------------------------------------------------------------

TEST_F(AccessibleWindowSystemTest, ShowsNoPrivateWindowAndAsksItForNoPage) {
  FakeFirefox firefox(bus_.address());
  FakeChromium chromium(bus_.address());
  firefox.show("/one", {.name = "A \xE2\x80\x94 Mozilla Firefox Private Browsing",
                        .address = "http://secret.test/1",
                        .isActive = true,
                        .mark = FakeBrowserWindow::Mark::Private});
  chromium.show("/one", {.name = "A - Chromium (Incognito)",
                         .address = "http://secret.test/2",
                         .mark = FakeBrowserWindow::Mark::Private});
  list({&firefox, &chromium});
  for (int i = 0; i < 60; ++i) EXPECT_TRUE(pass().titles.empty());
  for (FakeBrowser* browser : std::initializer_list<FakeBrowser*>{&firefox, &chromium}) {
    for (const std::string& call : browser->program().takeCalls()) {
      EXPECT_FALSE(call.starts_with("/one/page")) << call;
      EXPECT_FALSE(call.starts_with("/one/label")) << call;
    }
  }
}

TEST_F(AccessibleWindowSystemTest, ShowsNoWindowOfAFirefoxThatNeverRemembers) {
  FakeFirefox browser(bus_.address());
  FakeBrowserWindow window = firefoxWindow("A", "http://secret.test/", true);
  window.mark = FakeBrowserWindow::Mark::Private;
  browser.show("/one", window);
  window.mark = FakeBrowserWindow::Mark::None;
  browser.show("/popup", window);
  list({&browser});
  for (int i = 0; i < 60; ++i) EXPECT_TRUE(pass().titles.empty());
}

TEST_F(AccessibleWindowSystemTest, ShowsNoWindowWhoseMarksAndNameDisagree) {
  FakeChromium browser(bus_.address());
  FakeBrowserWindow window = chromiumWindow("A", "http://secret.test/", true);
  window.mark = FakeBrowserWindow::Mark::Private;
  browser.show("/one", window);
  list({&browser});
  for (int i = 0; i < 60; ++i) EXPECT_TRUE(pass().titles.empty());
}

TEST_F(AccessibleWindowSystemTest, HidesAWindowThatTakesOnAPrivateName) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  browser.show("/one", {.name = "A \xE2\x80\x94 Mozilla Firefox Private Browsing",
                        .address = "http://secret.test/",
                        .isActive = true});
  for (int i = 0; i < 30; ++i) {
    const Seen seen = pass();
    EXPECT_NE(seen.address, "http://secret.test/");
    EXPECT_FALSE(seen.status.starts_with("Connect:"));
  }
}

TEST_F(AccessibleWindowSystemTest, ShowsNoProgramThatOnlyCallsItsWindowABrowser) {
  FakeAccessibleProgram folder(bus_.address());
  FakeAccessibleProgram impostor(bus_.address());
  folder.setNames("nautilus", "gtk");
  impostor.setNames("Chromium", "gtk");
  FakeObject window;
  window.role = ATSPI_ROLE_FRAME;
  window.name = "Notes - Chromium";
  window.states = std::uint64_t{1} << ATSPI_STATE_ACTIVE;
  FakeObject root;
  root.children = {"/window"};
  for (FakeAccessibleProgram* program : {&folder, &impostor}) {
    program->set("/window", window);
    program->set(FakeAccessibleProgram::kRoot, root);
  }
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://a.test/"));
  list({&browser}, {&folder, &impostor});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  EXPECT_EQ(visitsIn(20), 0);
  EXPECT_EQ(pass().titles.size(), 1U);
  for (FakeAccessibleProgram* program : {&folder, &impostor}) {
    for (const std::string& call : program->takeCalls()) {
      EXPECT_EQ(call, "/org/a11y/atspi/accessible/root Get") << "nothing but its names";
    }
  }
}

// This happens while a browser rebuilds its tool bars.
TEST_F(AccessibleWindowSystemTest, SettlesNoWindowWhosePartsCannotBeRead) {
  FakeChromium chromium(bus_.address());
  FakeFirefox firefox(bus_.address());
  chromium.show("/one", chromiumWindow("A", "http://www.a.test/"));
  firefox.show("/one", firefoxWindow("B", "http://www.b.test/", true));
  chromium.program().remove("/one/bookmarks");
  firefox.program().remove("/one/button");
  list({&chromium, &firefox});
  for (int i = 0; i < 40; ++i) EXPECT_EQ(pass().titles, std::vector<std::string>{});
  chromium.show("/one", chromiumWindow("A", "http://www.a.test/"));
  firefox.show("/one", firefoxWindow("B", "http://www.b.test/", true));
  static_cast<void>(statusWhenSeen("http://www.b.test/"));
  EXPECT_TRUE(test::eventually([&] { return pass().titles.size() == 2; }));
}

TEST_F(AccessibleWindowSystemTest, ShowsNoPageOfAWindowWhoseNameCannotBeRead) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://www.a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser.show("/one", {.name = "", .address = "http://www.b.test/", .isActive = true});
  EXPECT_EQ(visitsIn(20), 0);
  browser.show("/one", firefoxWindow("B", "http://www.b.test/", true));
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
}

TEST_F(AccessibleWindowSystemTest, SkipsPopupsAndDialogs) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  FakeObject popup;
  popup.role = ATSPI_ROLE_FRAME;
  popup.states = std::uint64_t{1} << ATSPI_STATE_ACTIVE;
  FakeObject dialog = popup;
  dialog.role = ATSPI_ROLE_DIALOG;
  dialog.name = "Save \xE2\x80\x94 Mozilla Firefox";
  browser.program().set("/popup", popup);
  browser.program().set("/dialog", dialog);
  FakeObject root;
  root.children = {"/popup", "/dialog", "/one"};
  browser.program().set(FakeAccessibleProgram::kRoot, root);
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  EXPECT_EQ(pass().titles.size(), 1U);
}

TEST_F(AccessibleWindowSystemTest, NeverAsksItsOwnProcess) {
  DBusConnection* own = dbus_connection_open_private(bus_.address().c_str(), nullptr);
  ASSERT_NE(own, nullptr);
  ASSERT_TRUE(dbus_bus_register(own, nullptr));
  dbus_connection_set_exit_on_disconnect(own, FALSE);
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  FakeObject root;
  root.children = {dbus_bus_get_unique_name(own) + std::string(FakeAccessibleProgram::kRoot),
                   browser.root()};
  registry_->set(FakeAccessibleProgram::kRoot, root);
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  EXPECT_EQ(visitsIn(10), 0);
  dbus_connection_read_write(own, 0);
  bool wasAsked = false;
  while (DBusMessage* message = dbus_connection_pop_message(own)) {
    wasAsked |= dbus_message_get_type(message) == DBUS_MESSAGE_TYPE_METHOD_CALL;
    dbus_message_unref(message);
  }
  EXPECT_FALSE(wasAsked);
  dbus_connection_close(own);
  dbus_connection_unref(own);
}

TEST_F(AccessibleWindowSystemTest, KnowsNoHandleOfAnEarlierPass) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  WindowHandle old = kNoWindow;
  windows_.EnumWindows([&](WindowHandle window) {
    old = window;
    return false;
  });
  ASSERT_NE(old, kNoWindow);
  static_cast<void>(pass());
  EXPECT_EQ(textOf(old), "");
  EXPECT_EQ(windows_.GetWindow(old, WindowRelation::FirstChild), kNoWindow);
  EXPECT_EQ(windows_.GetParent(old), kNoWindow);
  EXPECT_EQ(windows_.SendMessageA(old, WindowMessage::GetTextLength, {}), 0U);
}

// --- cost ------------------------------------------------------------------------------

TEST_F(AccessibleWindowSystemTest, NeedsFewCallsForAPass) {
  FakeFirefox firefox(bus_.address());
  FakeChromium chromium(bus_.address());
  firefox.show("/one", firefoxWindow("1", "http://a.test/"));
  chromium.show("/one", chromiumWindow("2", "http://b.test/", true));
  list({&firefox, &chromium});
  static_cast<void>(statusWhenSeen("http://b.test/"));
  EXPECT_EQ(visitsIn(50), 0);
  std::uint64_t calls = 0;
  for (int i = 0; i < 50; ++i) {
    static_cast<void>(pass());
    calls += windows_.passStatistics().calls;
  }
  EXPECT_LE(calls, 50 * 8U);
}

TEST_F(AccessibleWindowSystemTest, NeverLooksIntoThePage) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://a.test/"));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  EXPECT_EQ(visitsIn(20), 0);
  const std::vector<std::string> calls = browser.program().takeCalls();
  EXPECT_EQ(std::ranges::count(calls, "/one/page GetChildren"), 0);
}

// --- programs that are slow, dead or absurd ---------------------------------------------

TEST_F(AccessibleWindowSystemTest, RecordsPagesOfABrowserThatAnswersSlowly) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  int number = 0;
  for (const int milliseconds : {50, 100, 300, 500}) {
    browser.program().setAnswerTime(std::chrono::milliseconds(milliseconds));
    const std::string address = "http://www.b.test/" + std::to_string(++number);
    browser.load("/one", "/one/next" + std::to_string(number), address);
    EXPECT_EQ(statusWhenSeenInTime(address), "Connect: www.b.test") << milliseconds;
  }
}

TEST_F(AccessibleWindowSystemTest, SpendsAtMostAFifthOfTheTimeOnABrowserThatAnswersJustInTime) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  browser.program().setAnswerTime(std::chrono::milliseconds(18));
  std::chrono::microseconds spent{0};
  std::chrono::microseconds free{0};
  for (int i = 0; i < 50; ++i) {
    static_cast<void>(pass());
    spent += duration();
    const auto pause = windows_.timeToNextPass();
    free += pause;
    std::this_thread::sleep_for(pause);
  }
  EXPECT_LE(spent, (spent + free) / 5 + std::chrono::milliseconds(10));
}

TEST_F(AccessibleWindowSystemTest, WaitsForAFrozenBrowserOnlyOnce) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  browser.program().freeze();
  EXPECT_EQ(pass().status, "Done");
  EXPECT_LT(duration(), kLongestPass);
  for (int i = 0; i < 10; ++i) {
    const Seen seen = pass();
    EXPECT_EQ(seen.titles.size(), 1U);
    EXPECT_EQ(seen.address, "http://a.test/");
    EXPECT_EQ(seen.status, "Done");
  }
  EXPECT_TRUE(waitsNoMore());
  browser.program().thaw();
  browser.load("/one", "/one/next", "http://b.test/");
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsAnotherBrowserWhileOneIsFrozen) {
  FakeFirefox frozen(bus_.address());
  FakeChromium other(bus_.address());
  frozen.show("/one", firefoxWindow("1", "http://a.test/", true));
  other.show("/one", chromiumWindow("2", "http://b.test/"));
  list({&frozen, &other});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  frozen.program().freeze();
  static_cast<void>(pass());
  other.show("/one", chromiumWindow("2", "http://b.test/", true));
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
  other.load("/one", "/one/next", "http://c.test/");
  EXPECT_EQ(statusWhenSeen("http://c.test/"), "Connect: c.test");
  EXPECT_TRUE(waitsNoMore());
}

TEST_F(AccessibleWindowSystemTest, ReadsABrowserBesideProgramsThatAnswerLateOrNever) {
  FakeAccessibleProgram late(bus_.address());
  FakeAccessibleProgram never(bus_.address());
  FakeAccessibleProgram absurd(bus_.address());
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  late.setNames("late", "gtk");
  late.setAnswerTime(std::chrono::milliseconds(500));
  absurd.setNames("absurd", "gtk");
  absurd.set("/window", {});
  absurd.setLongName("/window", std::size_t{60} * 1024 * 1024);
  FakeObject root;
  root.children = {"/window"};
  absurd.set(FakeAccessibleProgram::kRoot, root);
  list({&browser}, {&late, &never, &absurd});
  never.freeze();
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  for (int i = 0; i < 16; ++i) {
    const std::string address = "http://www.b.test/" + std::to_string(i);
    browser.load("/one", "/one/next" + std::to_string(i), address);
    // In the pass that begins afterwards, or soon after that on a busy machine.
    EXPECT_EQ(visitsIn(3), 1) << address;
  }
  EXPECT_TRUE(waitsNoMore());
  never.thaw();
}

TEST_F(AccessibleWindowSystemTest, SurvivesABrowserWithAnAbsurdName) {
  FakeChromium absurd(bus_.address());
  FakeFirefox browser(bus_.address());
  absurd.show("/one", chromiumWindow("A", "http://b.test/"));
  absurd.program().setLongName("/one", std::size_t{60} * 1024 * 1024);
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  list({&absurd, &browser});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  browser.load("/one", "/one/next", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
}

// --- browsers that cannot be read ------------------------------------------------------------

class UnreadableBrowsersTest : public AccessibleWindowSystemTest {
 protected:
  // The browsers reported after this many seconds of passes, each as "name reason".
  std::vector<std::string> toldAfter(int seconds) {
    for (int i = 0; i < seconds * 10; ++i) static_cast<void>(pass());
    std::vector<std::string> told;
    for (const UnreadableBrowser& browser : windows_.unreadableBrowsers()) {
      told.push_back(browser.name + ' ' + kReasons[static_cast<std::size_t>(browser.reason)]);
    }
    return told;
  }

  static constexpr std::array<const char*, 4> kReasons = {"early", "off", "no bus", "kind"};
};

TEST_F(UnreadableBrowsersTest, TellsOfAChromiumThatIsNotOnTheBus) {
  processes_ = {{.id = 4711, .kind = BrowserKind::Chromium}};
  EXPECT_EQ(toldAfter(5), std::vector<std::string>{}) << "it may be starting";
  EXPECT_EQ(toldAfter(5), std::vector<std::string>{"Chromium early"});
  processes_.clear();
  EXPECT_EQ(toldAfter(3), std::vector<std::string>{});
}

TEST_F(UnreadableBrowsersTest, TellsOfBrowsersThatMayNotBeAccessible) {
  processes_ = {{.id = 4711, .kind = BrowserKind::Chromium, .vetoesAccessibility = true},
                {.id = 4712, .kind = BrowserKind::Firefox}};
  EXPECT_EQ(toldAfter(10), (std::vector<std::string>{"Chromium off", "Firefox off"}));
}

TEST_F(UnreadableBrowsersTest, TellsNothingOfBrowsersThatAreOnTheBus) {
  FakeChromium browser(bus_.address());
  browser.show("/one", chromiumWindow("A", "http://a.test/"));
  list({&browser});
  processes_ = {{.id = static_cast<std::uint32_t>(browser.program().process()),
                 .kind = BrowserKind::Chromium}};
  EXPECT_EQ(toldAfter(20), std::vector<std::string>{});
  // A sandboxed browser has another process id on the bus.
  processes_ = {{.id = 4711, .kind = BrowserKind::Chromium}};
  EXPECT_EQ(toldAfter(20), std::vector<std::string>{});
}

TEST_F(UnreadableBrowsersTest, TellsThatThereIsNoBus) {
  bus_.kill();
  processes_ = {{.id = 4711, .kind = BrowserKind::Firefox}};
  EXPECT_EQ(toldAfter(10), std::vector<std::string>{"Firefox no bus"});
}

TEST_F(UnreadableBrowsersTest, TellsOfAWindowWhoseKindIsNotKnown) {
  FakeFirefox browser(bus_.address());
  FakeBrowserWindow window = firefoxWindow("A", "http://a.test/", true);
  window.mark = FakeBrowserWindow::Mark::None;
  browser.show("/one", window);
  list({&browser});
  EXPECT_EQ(toldAfter(9), std::vector<std::string>{});
  EXPECT_EQ(toldAfter(3), std::vector<std::string>{"Firefox kind"});
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  EXPECT_EQ(toldAfter(10), std::vector<std::string>{});
}

TEST_F(UnreadableBrowsersTest, TellsNothingOfPrivateWindows) {
  FakeChromium browser(bus_.address());
  browser.show("/one", {.name = "A - Chromium (Incognito)",
                        .address = "http://secret.test/",
                        .isActive = true,
                        .mark = FakeBrowserWindow::Mark::Private});
  list({&browser});
  EXPECT_EQ(toldAfter(20), std::vector<std::string>{});
}

// --- programs and buses that go away ---------------------------------------------------------

TEST_F(AccessibleWindowSystemTest, ForgetsABrowserThatIsKilledWhileFrozen) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  browser.program().freeze();
  static_cast<void>(pass());
  browser.program().kill();
  list({});
  EXPECT_TRUE(test::eventually([&] { return pass().titles.empty(); }));
}

TEST_F(AccessibleWindowSystemTest, SoonWaitsNoMoreForAFrozenBus) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/", true));
  list({&browser});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  bus_.freeze();
  // One wait for the browser, and one for the list of programs.
  int waits = 0;
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(pass().status, "Done");
    EXPECT_LT(duration(), kLongestPass);
    if (hasWaited()) ++waits;
  }
  EXPECT_LE(waits, 2);
  bus_.thaw();
  browser.load("/one", "/one/next", "http://b.test/");
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, WaitsOnceForABusThatIsFrozenFromTheStart) {
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  list({&browser});
  bus_.freeze();
  for (int i = 0; i < 50; ++i) {
    EXPECT_TRUE(pass().titles.empty());
    EXPECT_LT(duration(), kLongestPass);
    EXPECT_EQ(hasWaited(), i == 0);
  }
  bus_.thaw();
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
}

TEST_F(AccessibleWindowSystemTest, GoesOnWhenTheBusIsBack) {
  auto browser = std::make_unique<FakeFirefox>(bus_.address());
  browser->show("/one", firefoxWindow("A", "http://a.test/"));
  list({browser.get()});
  static_cast<void>(statusWhenSeen("http://a.test/"));
  bus_.kill();
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(pass().address, "");
    EXPECT_LT(duration(), kLongestPass);
  }
  bus_.restart();
  startRegistry();
  browser = std::make_unique<FakeFirefox>(bus_.address());
  browser->show("/one", firefoxWindow("A", "http://a.test/"));
  list({browser.get()});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Done");
  browser->load("/one", "/one/next", "http://b.test/");
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, FindsTheBusThroughTheSessionAndSwitchesItOn) {
  unsetenv("AT_SPI_BUS_ADDRESS");
  test::TestBus session;
  setenv("DBUS_SESSION_BUS_ADDRESS", session.address().c_str(), 1);
  FakeAccessibleProgram service(session.address(), "org.a11y.Bus");
  service.serveBusAddress(bus_.address());
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://a.test/"));
  list({&browser});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  EXPECT_FALSE(service.isSwitchedOn());
  windows_.prepareForTracking();
  EXPECT_TRUE(test::eventually([&] {
    static_cast<void>(pass());
    return service.isSwitchedOn();
  }));
}

TEST_F(AccessibleWindowSystemTest, SwitchesItOnWhenTheSessionAnswersAtLast) {
  test::TestBus session;
  setenv("DBUS_SESSION_BUS_ADDRESS", session.address().c_str(), 1);
  FakeAccessibleProgram service(session.address(), "org.a11y.Bus");
  service.freeze();
  bus_.freeze();
  windows_.prepareForTracking();
  for (int i = 0; i < 10; ++i) {
    static_cast<void>(pass());
    EXPECT_LT(duration(), kLongestPass);
    EXPECT_EQ(hasWaited(), i == 0);
  }
  bus_.thaw();
  service.thaw();
  EXPECT_TRUE(test::eventually([&] {
    static_cast<void>(pass());
    return service.isSwitchedOn();
  }));
}

}  // namespace
}  // namespace quorrix
