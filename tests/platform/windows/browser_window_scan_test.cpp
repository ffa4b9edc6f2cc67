// The scan and its window system with real windows of user32.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/windows/user32_window_system.h"
#include "support/code_pages.h"
#include "support/eventually.h"
#include "support/windows/test_browser_window.h"
#include "tracking/browser_scan.h"

namespace quorrix {
namespace {

using namespace std::chrono_literals;
using test::TestBrowserWindow;

class BrowserWindowTest : public testing::Test {
 protected:
  std::string titleOf(WindowHandle window, std::size_t bufferSize = 1024) {
    std::string buffer(bufferSize, '?');
    const std::size_t length = windows_.GetWindowTextA(window, buffer);
    EXPECT_EQ(buffer[length], '\0');
    return buffer.substr(0, length);
  }

  std::string classOf(WindowHandle window, std::size_t bufferSize = 256) {
    std::string buffer(bufferSize, '?');
    const std::size_t length = windows_.GetClassNameA(window, buffer);
    EXPECT_EQ(buffer[length], '\0');
    return buffer.substr(0, length);
  }

  std::string textOf(WindowHandle window, std::size_t bufferSize) {
    std::string buffer(bufferSize, '?');
    const std::size_t length = windows_.SendMessageA(window, WindowMessage::GetText, buffer);
    EXPECT_EQ(buffer[length], '\0');
    return buffer.substr(0, length);
  }

  std::size_t textLengthOf(WindowHandle window) {
    return windows_.SendMessageA(window, WindowMessage::GetTextLength, {});
  }

  std::vector<WindowHandle> topLevelWindows() {
    std::vector<WindowHandle> found;
    windows_.EnumWindows([&](WindowHandle window) {
      found.push_back(window);
      return true;
    });
    return found;
  }

  BrowserReading scan() { return scan(windows_); }

  static BrowserReading scan(WindowSystem& windows) {
    BrowserReading reading;
    scanBrowserWindows(windows, reading);
    return reading;
  }

  // With a long timeout, so that a busy machine does not look like a browser that hangs.
  User32WindowSystem windows_{test::westernCodePage(), 20s};
  TestBrowserWindow browser_{L"A page - Netscape"};
};

using User32WindowSystemTest = BrowserWindowTest;

TEST_F(User32WindowSystemTest, EnumeratesTheFrontWindowFirst) {
  const TestBrowserWindow inFront(L"Another window");
  const auto found = topLevelWindows();
  const auto front = std::find(found.begin(), found.end(), inFront.frame());
  const auto behind = std::find(found.begin(), found.end(), browser_.frame());
  ASSERT_NE(behind, found.end());
  EXPECT_LT(front, behind);
}

TEST_F(User32WindowSystemTest, EndsTheEnumerationWhenTheCallbackSaysSo) {
  int calls = 0;
  windows_.EnumWindows([&](WindowHandle) {
    ++calls;
    return false;
  });
  EXPECT_EQ(calls, 1);
}

TEST_F(User32WindowSystemTest, CarriesTheCallbacksExceptionOut) {
  int calls = 0;
  const auto failing = [&](WindowHandle) -> bool {
    ++calls;
    throw std::length_error("told by the callback");
  };
  EXPECT_THROW(windows_.EnumWindows(failing), std::length_error);
  EXPECT_EQ(calls, 1);
}

TEST_F(User32WindowSystemTest, ReadsClassNamesIntoTheRoomGiven) {
  EXPECT_EQ(classOf(browser_.addressCombo()), "ComboBox");
  EXPECT_EQ(classOf(browser_.addressCombo(), 4), "Com");
  EXPECT_EQ(classOf(browser_.addressCombo(), 1), "");
  EXPECT_EQ(classOf(browser_.addressEdit()), "Edit");
  EXPECT_EQ(classOf(browser_.statusBar()), "msctls_statusbar32");
}

TEST_F(User32WindowSystemTest, ReadsTitlesIntoTheRoomGiven) {
  EXPECT_EQ(titleOf(browser_.frame()), "A page - Netscape");
  EXPECT_EQ(titleOf(browser_.frame(), 7), "A page");
  browser_.shows(L"");
  EXPECT_EQ(titleOf(browser_.frame()), "");
}

TEST_F(User32WindowSystemTest, CutsATitleOfMoreThan1023Characters) {
  browser_.shows(std::wstring(2000, L't'));
  EXPECT_EQ(titleOf(browser_.frame()), std::string(1023, 't'));
}

TEST_F(User32WindowSystemTest, GivesTextInTheCodePageWhateverTheMachineIsSetTo) {
  browser_.shows(L"\u20AC \u00E9 \u2014 \u0416 \u66F8");
  EXPECT_EQ(titleOf(browser_.frame()), "\x80 \xE9 \x97 ? ?");
  browser_.typeAddress(L"caf\u00E9.test/\u0416");
  EXPECT_EQ(textOf(browser_.addressEdit(), 100), "caf\xE9.test/?");
  EXPECT_EQ(textLengthOf(browser_.addressEdit()), 11U);
}

// A letter with a tone is one character of the window and two of the code page.
TEST_F(User32WindowSystemTest, HasRoomForAVietnameseAddress) {
  const CodePage vietnamese(1258);
  User32WindowSystem windows(vietnamese, 20s);
  browser_.typeAddress(L"http://one.two.three/ti\u1EBFng");
  EXPECT_EQ(scan(windows).webAddress, "http://one.two.three/ti\xEA\xECng");
}

TEST_F(User32WindowSystemTest, WalksParentsChildrenAndSiblings) {
  EXPECT_EQ(windows_.GetParent(browser_.addressEdit()), browser_.addressCombo());
  EXPECT_EQ(windows_.GetWindow(browser_.addressCombo(), WindowRelation::FirstChild),
            browser_.addressEdit());
  EXPECT_EQ(windows_.GetWindow(browser_.addressEdit(), WindowRelation::FirstChild), kNoWindow);

  const auto first = windows_.GetWindow(browser_.frame(), WindowRelation::FirstChild);
  const auto second = windows_.GetWindow(first, WindowRelation::NextSibling);
  EXPECT_TRUE(first == browser_.statusBar() || second == browser_.statusBar());
  EXPECT_EQ(windows_.GetWindow(second, WindowRelation::NextSibling), kNoWindow);
}

TEST_F(User32WindowSystemTest, ReadsTextAndItsLength) {
  browser_.typeAddress(L"http://one.two.three/a/b");
  EXPECT_EQ(textLengthOf(browser_.addressEdit()), 24U);
  EXPECT_EQ(textOf(browser_.addressEdit(), 25), "http://one.two.three/a/b");
  EXPECT_EQ(textOf(browser_.addressEdit(), 8), "http://");
  EXPECT_EQ(textOf(browser_.addressEdit(), 1), "");
  browser_.typeAddress(L"");
  EXPECT_EQ(textLengthOf(browser_.addressEdit()), 0U);
}

TEST_F(User32WindowSystemTest, AnswersNothingForAWindowThatIsGone) {
  WindowHandle gone = kNoWindow;
  {
    const TestBrowserWindow closed(L"Closed - Netscape");
    gone = closed.frame();
  }
  EXPECT_EQ(titleOf(gone), "");
  EXPECT_EQ(classOf(gone), "");
  EXPECT_EQ(textOf(gone, 100), "");
  EXPECT_EQ(textLengthOf(gone), 0U);
  EXPECT_EQ(windows_.GetParent(gone), kNoWindow);
  EXPECT_EQ(windows_.GetWindow(gone, WindowRelation::FirstChild), kNoWindow);
}

using BrowserWindowScan = BrowserWindowTest;

TEST_F(BrowserWindowScan, ReadsTheAddressInTheComboBox) {
  browser_.typeAddress(L"http://one.two.three/a/b");
  EXPECT_EQ(scan().webAddress, "http://one.two.three/a/b");
}

TEST_F(BrowserWindowScan, ReadsAnAddressOfAnyLength) {
  browser_.typeAddress(L"http://" + std::wstring(3000, L'a'));
  EXPECT_EQ(scan().webAddress, "http://" + std::string(3000, 'a'));
}

TEST_F(BrowserWindowScan, FindsTheBrowserByTheStartOfItsTitleToo) {
  browser_.shows(L"Netscape: a page");
  browser_.typeAddress(L"http://one.two.three");
  EXPECT_EQ(scan().webAddress, "http://one.two.three");
}

TEST_F(BrowserWindowScan, KnowsABrowserByTheFirst1023CharactersOfItsTitle) {
  browser_.typeAddress(L"http://one.two.three");
  browser_.shows(std::wstring(1015, L't') + L"Netscape");
  EXPECT_EQ(scan().webAddress, "http://one.two.three");
  browser_.shows(std::wstring(1016, L't') + L"Netscape");
  EXPECT_EQ(scan().webAddress, "");
  browser_.shows(L"Netscape" + std::wstring(2000, L't'));
  EXPECT_EQ(scan().webAddress, "http://one.two.three");
}

TEST_F(BrowserWindowScan, LeavesOtherWindowsUnread) {
  browser_.shows(L"A page - Netscape Navigator");
  browser_.typeAddress(L"http://one.two.three");
  browser_.says(L"Connect: contacting host");
  const BrowserReading reading = scan();
  EXPECT_EQ(reading.webAddress, "");
  EXPECT_FALSE(reading.haveValidAddress);
}

TEST_F(BrowserWindowScan, ReadsABrowserBehindWindowsOfOtherBrowsers) {
  const TestBrowserWindow firefox(L"A page \u2014 Mozilla Firefox");
  const TestBrowserWindow chrome(L"A page - Google Chrome");
  browser_.typeAddress(L"http://one.two.three");
  EXPECT_EQ(scan().webAddress, "http://one.two.three");
}

TEST_F(BrowserWindowScan, ReadsTheFrontOneOfTwoBrowsers) {
  const auto another = std::make_unique<TestBrowserWindow>(L"Second - Netscape");
  browser_.typeAddress(L"http://behind.test");
  another->typeAddress(L"http://in.front.test");
  EXPECT_EQ(scan().webAddress, "http://in.front.test");
}

struct StatusCase {
  const wchar_t* status;
  bool isVisit;
};

class StatusBarText : public BrowserWindowTest, public testing::WithParamInterface<StatusCase> {};

TEST_P(StatusBarText, TellsAVisit) {
  browser_.says(GetParam().status);
  EXPECT_EQ(scan().haveValidAddress, GetParam().isVisit);
}

INSTANTIATE_TEST_SUITE_P(
    Visits, StatusBarText,
    testing::Values(StatusCase{L"Connect: contacting host", true}, StatusCase{L"Connect:", true},
                    StatusCase{L"4% of page", true}, StatusCase{L"42% of page", true},
                    StatusCase{L"100% of page", true}, StatusCase{L"4.2% of page", true}));
INSTANTIATE_TEST_SUITE_P(Rest, StatusBarText,
                         testing::Values(StatusCase{L"", false}, StatusCase{L"Done", false},
                                         StatusCase{L"% of page", false},
                                         StatusCase{L"1000% of page", false},
                                         StatusCase{L"Connect", false},
                                         StatusCase{L" Connect: host", false}));

TEST_F(BrowserWindowScan, DoesNotHangWithTheBrowser) {
  User32WindowSystem windows(test::westernCodePage());
  browser_.typeAddress(L"http://one.two.three");
  browser_.hangs();
  const auto start = std::chrono::steady_clock::now();
  const BrowserReading reading = scan(windows);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
  EXPECT_EQ(reading.webAddress, "");
  EXPECT_FALSE(reading.haveValidAddress);
  EXPECT_EQ(titleOf(browser_.frame()), "A page - Netscape");
}

TEST_F(BrowserWindowScan, AsksABrowserThatHungAgainInALaterPass) {
  User32WindowSystem windows(test::westernCodePage());
  browser_.typeAddress(L"http://one.two.three");
  browser_.hangs();
  EXPECT_EQ(scan(windows).webAddress, "");
  browser_.wakesUp();
  EXPECT_TRUE(test::eventually([&] { return scan(windows).webAddress == "http://one.two.three"; }));
}

}  // namespace
}  // namespace quorrix
