#include "tracking/browser_scan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/failure_number.h"
#include "support/fake_window_system.h"

namespace quorrix {
namespace {

using test::browserWindow;
using test::failureNumberOf;
using test::FakeWindow;
using test::WindowCall;

const FakeWindow kStatusBarAlone = {.windowClass = "msctls_statusbar32", .text = "Connect: "};

FakeWindow addressBox(std::string address) {
  return {.windowClass = "ComboBox",
          .children = {{.windowClass = "Edit", .text = std::move(address)}}};
}

FakeWindow browserWith(std::vector<FakeWindow> children) {
  return {.windowClass = "Frame", .title = "A page - Netscape", .children = std::move(children)};
}

class BrowserScanTest : public testing::Test {
 protected:
  void scan(std::vector<FakeWindow> windows) {
    windows_.show(std::move(windows));
    scanBrowserWindows(windows_, reading_);
  }

  std::string addressOf(std::vector<FakeWindow> windows) {
    scan(std::move(windows));
    return reading_.webAddress;
  }

  bool isVisit(std::string statusText) {
    reading_.haveValidAddress = false;
    scan({browserWindow("A page - Netscape", "one.two.three", std::move(statusText))});
    return reading_.haveValidAddress;
  }

  // The sizes of the buffers that were passed for the class names of windows of class
  // `windowClass`.
  std::vector<std::size_t> classBuffersOf(const std::string& windowClass) {
    std::vector<std::size_t> sizes;
    for (const auto& call : windows_.calls()) {
      if (call.kind == WindowCall::GetClassNameA && call.windowClass == windowClass) {
        sizes.push_back(call.bufferSize);
      }
    }
    return sizes;
  }

  test::FakeWindowSystem windows_;
  BrowserReading reading_;
};

TEST(IsBrowserTitle, TakesTheNameAtTheBeginningOrAtTheEnd) {
  EXPECT_TRUE(isBrowserTitle("Netscape"));
  EXPECT_TRUE(isBrowserTitle("Netscape - [A page]"));
  EXPECT_TRUE(isBrowserTitle("A page - Netscape"));
  EXPECT_TRUE(isBrowserTitle("Netscapes"));
  EXPECT_TRUE(isBrowserTitle("xNetscape"));
}

TEST(IsBrowserTitle, RejectsOtherPositionsLetterCasesAndPartialNames) {
  EXPECT_FALSE(isBrowserTitle("About Netscape 4"));
  EXPECT_FALSE(isBrowserTitle(" Netscape "));
  EXPECT_FALSE(isBrowserTitle("netscape"));
  EXPECT_FALSE(isBrowserTitle("A page - NETSCAPE"));
  EXPECT_FALSE(isBrowserTitle("Netscap"));
  EXPECT_FALSE(isBrowserTitle("etscape"));
  EXPECT_FALSE(isBrowserTitle(""));
}

TEST(IsBrowserTitle, KnowsNoOtherName) {
  EXPECT_FALSE(isBrowserTitle("A page \x97 Mozilla Firefox"));
  EXPECT_FALSE(isBrowserTitle("A page - Chromium"));
  EXPECT_FALSE(isBrowserTitle("A page - Google Chrome"));
  EXPECT_FALSE(isBrowserTitle("[InPrivate] A page - Microsoft Edge"));
}

TEST_F(BrowserScanTest, ReadsTheAddressBoxOfTheBrowser) {
  scan({browserWindow("A page - Netscape", "http://one.two.three/page", "Document: Done")});
  EXPECT_EQ(reading_.webAddress, "http://one.two.three/page");
  EXPECT_FALSE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, EmptiesTheAddressWhenThereIsNoBrowser) {
  reading_.webAddress = "one.two.three";
  EXPECT_EQ(addressOf({{.windowClass = "Frame",
                        .title = "Text Editor",
                        .children = {addressBox("four.five.six"), kStatusBarAlone}}}),
            "");
  EXPECT_FALSE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, EmptiesTheAddressWhenThereIsNoWindow) {
  reading_.webAddress = "one.two.three";
  EXPECT_EQ(addressOf({}), "");
}

TEST_F(BrowserScanTest, EmptiesTheAddressBeforeItAsksForWindows) {
  reading_.webAddress = "one.two.three";
  windows_.failAt(WindowCall::EnumWindows, 1, 68);
  EXPECT_EQ(failureNumberOf([this] { scanBrowserWindows(windows_, reading_); }), 68);
  EXPECT_EQ(reading_.webAddress, "");
}

TEST_F(BrowserScanTest, ReadsOnlyTheFirstOfTwoBrowsers) {
  scan({{.windowClass = "Frame", .title = "Text Editor"},
        browserWindow("A page - Netscape", "one.two.three", "Document: Done"),
        browserWindow("Another - Netscape", "four.five.six", "Connect: four")});
  EXPECT_EQ(reading_.webAddress, "one.two.three");
  EXPECT_FALSE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, ReadsNoSecondBrowserWhenTheFirstShowsNoAddress) {
  EXPECT_EQ(addressOf({browserWindow("A page - Netscape", "", ""),
                       browserWindow("Another - Netscape", "four.five.six", "")}),
            "");
}

TEST_F(BrowserScanTest, SkipsWindowsWithOtherTitles) {
  EXPECT_EQ(addressOf({browserWindow("X - Chromium (Incognito)", "a.secret.place", "Connect: "),
                       browserWindow("A page \x97 Mozilla Firefox", "another.secret.place", ""),
                       browserWindow("A page - Netscape", "one.two.three", "")}),
            "one.two.three");
  EXPECT_FALSE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, AsksAWindowOfAnotherNameForItsTitleOnly) {
  scan({browserWindow("X - Chromium", "a.secret.place", "Connect: ")});
  ASSERT_EQ(windows_.calls().size(), 2U);
  EXPECT_EQ(windows_.calls()[0].kind, WindowCall::EnumWindows);
  EXPECT_EQ(windows_.calls()[1].kind, WindowCall::GetWindowTextA);
}

TEST_F(BrowserScanTest, ReadsTitlesInto1024Characters) {
  scan({{.windowClass = "Frame", .title = "Text Editor"}});
  EXPECT_EQ(windows_.calls()[1].bufferSize, 1024U);
}

TEST_F(BrowserScanTest, MatchesTheEndOfATruncatedTitle) {
  const auto title = [](std::size_t inFront, std::string behind) {
    return std::string(inFront, 'x') + "Netscape" + behind;
  };
  EXPECT_EQ(addressOf({browserWindow(title(1015, ""), "one.two.three", "")}), "one.two.three");
  EXPECT_EQ(addressOf({browserWindow(title(1016, ""), "one.two.three", "")}), "");
  EXPECT_EQ(addressOf({browserWindow(title(1015, " and more"), "one.two.three", "")}),
            "one.two.three");
}

TEST_F(BrowserScanTest, AsksForClassNamesOf256Characters) {
  scan({browserWindow("A page - Netscape", "one.two.three", "")});
  EXPECT_EQ(classBuffersOf("BrowserFrame"), std::vector<std::size_t>{256});
  EXPECT_EQ(classBuffersOf("Edit").front(), 256U);
}

TEST_F(BrowserScanTest, ReadsTheParentsClassIntoAFourByteBuffer) {
  scan({browserWindow("A page - Netscape", "one.two.three", "")});
  const std::vector<std::size_t> sizes = classBuffersOf("ComboBox");
  ASSERT_FALSE(sizes.empty());
  EXPECT_EQ(sizes.back(), 4U);
}

TEST_F(BrowserScanTest, AcceptsAnEditWhoseParentClassBeginsWithCom) {
  const auto boxOf = [](std::string parentClass) {
    return browserWith({{.windowClass = std::move(parentClass),
                         .children = {{.windowClass = "Edit", .text = "one.two.three"}}}});
  };
  EXPECT_EQ(addressOf({boxOf("ComboBox")}), "one.two.three");
  EXPECT_EQ(addressOf({boxOf("ComboBoxEx32")}), "one.two.three");
  EXPECT_EQ(addressOf({boxOf("Com")}), "one.two.three");
  EXPECT_EQ(addressOf({boxOf("Command")}), "one.two.three");
  EXPECT_EQ(addressOf({boxOf("Co")}), "");
  EXPECT_EQ(addressOf({boxOf("combobox")}), "");
  EXPECT_EQ(addressOf({boxOf("Toolbar")}), "");
}

TEST_F(BrowserScanTest, TakesNothingButAnEdit) {
  const auto childOf = [](std::string childClass) {
    return browserWith(
        {{.windowClass = "ComboBox",
          .children = {{.windowClass = std::move(childClass), .text = "one.two.three"}}}});
  };
  EXPECT_EQ(addressOf({childOf("EDIT")}), "");
  EXPECT_EQ(addressOf({childOf("Edit2")}), "");
  EXPECT_EQ(addressOf({childOf("RichEdit")}), "");
  EXPECT_EQ(addressOf({childOf("")}), "");
}

TEST_F(BrowserScanTest, TakesNoEditOutsideACombo) {
  EXPECT_EQ(addressOf({browserWith({{.windowClass = "Edit", .text = "one.two.three"}})}), "");
}

TEST_F(BrowserScanTest, LooksInsideAnEditThatIsNoAddressBox) {
  EXPECT_EQ(addressOf({browserWith({{.windowClass = "Edit",
                                     .text = "something else",
                                     .children = {addressBox("one.two.three")}}})}),
            "one.two.three");
}

TEST_F(BrowserScanTest, DoesNotLookInsideTheAddressBox) {
  EXPECT_EQ(addressOf({browserWith(
                {{.windowClass = "ComboBox",
                  .children = {{.windowClass = "Edit",
                                .text = "one.two.three",
                                .children = {addressBox("four.five.six"), kStatusBarAlone}}}}})}),
            "one.two.three");
  EXPECT_FALSE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, FindsTheAddressBoxHoweverDeepItIs) {
  FakeWindow window = addressBox("one.two.three");
  for (int depth = 0; depth < 20; ++depth) {
    window = {.windowClass = "Bar", .children = {{.windowClass = "Button"}, std::move(window)}};
  }
  EXPECT_EQ(addressOf({browserWith({std::move(window), {.windowClass = "Button"}})}),
            "one.two.three");
}

TEST_F(BrowserScanTest, TakesTheLastAddressBoxThatHoldsSomething) {
  EXPECT_EQ(addressOf({browserWith(
                {addressBox("one.two.three"), addressBox("four.five.six"), addressBox("")})}),
            "four.five.six");
}

TEST_F(BrowserScanTest, IgnoresTheTextOfABrowserWindowOfClassEdit) {
  EXPECT_EQ(addressOf({{.windowClass = "Edit", .title = "Netscape", .text = "one.two.three"}}), "");
}

TEST_F(BrowserScanTest, SeesAVisitInAPercentSignAtTheSecondToFourthCharacter) {
  EXPECT_TRUE(isVisit("5% of 12K"));
  EXPECT_TRUE(isVisit("42% of 12K"));
  EXPECT_TRUE(isVisit("100%"));
  EXPECT_TRUE(isVisit("x%"));
  EXPECT_TRUE(isVisit("%%"));
  EXPECT_TRUE(isVisit("%42%"));
}

TEST_F(BrowserScanTest, SeesNoVisitInAPercentSignElsewhere) {
  EXPECT_FALSE(isVisit("%"));
  EXPECT_FALSE(isVisit("% done"));
  EXPECT_FALSE(isVisit("1000% of 12K"));
  EXPECT_FALSE(isVisit("Done: 100%"));
  EXPECT_FALSE(isVisit(""));
  EXPECT_FALSE(isVisit("42"));
}

TEST_F(BrowserScanTest, SeesAVisitWhileTheBrowserConnects) {
  EXPECT_TRUE(isVisit("Connect: Contacting host: one.two.three..."));
  EXPECT_TRUE(isVisit("Connect:"));
  EXPECT_FALSE(isVisit("Connect"));
  EXPECT_FALSE(isVisit("connect:"));
  EXPECT_FALSE(isVisit("Connected:"));
  EXPECT_FALSE(isVisit(" Connect:"));
}

TEST_F(BrowserScanTest, LeavesASeenVisitForTheLoopToClear) {
  reading_.haveValidAddress = true;
  scan({browserWindow("A page - Netscape", "one.two.three", "Document: Done")});
  EXPECT_TRUE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, SeesTheStatusBarHoweverDeepItIs) {
  scan({browserWith({{.windowClass = "Bar", .children = {kStatusBarAlone}}})});
  EXPECT_TRUE(reading_.haveValidAddress);
  EXPECT_EQ(reading_.webAddress, "");
}

TEST_F(BrowserScanTest, SeesAVisitInAnyOfSeveralStatusBars) {
  scan({browserWith({kStatusBarAlone, {.windowClass = "msctls_statusbar32", .text = "Done"}})});
  EXPECT_TRUE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, IgnoresVisitTextOutsideAStatusBar) {
  scan({browserWith({{.windowClass = "msctls_statusbar", .text = "Connect:"},
                     {.windowClass = "Static", .text = "Connect:"},
                     addressBox("Connect:")})});
  EXPECT_FALSE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, DoesNotTakeTheBrowserWindowItselfForAStatusBar) {
  scan({{.windowClass = "msctls_statusbar32", .title = "Netscape", .text = "Connect:"}});
  EXPECT_FALSE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, SearchesInsideAStatusBar) {
  EXPECT_EQ(addressOf({browserWith({{.windowClass = "msctls_statusbar32",
                                     .text = "Done",
                                     .children = {addressBox("one.two.three")}}})}),
            "one.two.three");
}

TEST_F(BrowserScanTest, ReadsAddressesOfAnyLength) {
  const std::string longest = "one.two.three/" + std::string(100'000, 'x');
  EXPECT_EQ(addressOf({browserWindow("Netscape", longest, "")}), longest);
}

TEST_F(BrowserScanTest, CutsATextToWhatWasCopied) {
  // The announced length may be too large, and the text may shrink before it is read.
  EXPECT_EQ(addressOf({browserWith({{.windowClass = "ComboBox",
                                     .children = {{.windowClass = "Edit",
                                                   .text = "one.two.three",
                                                   .announcedLength = 100}}}})}),
            "one.two.three");
}

TEST_F(BrowserScanTest, CutsATextToWhatWasAnnounced) {
  EXPECT_EQ(addressOf({browserWith({{.windowClass = "ComboBox",
                                     .children = {{.windowClass = "Edit",
                                                   .text = "one.two.three",
                                                   .announcedLength = 7}}}})}),
            "one.two");
}

TEST_F(BrowserScanTest, ReadsNothingFromABrowserThatCloses) {
  windows_.beforeEachCall([this](const auto& call) {
    if (call.windowClass == "ComboBox") windows_.show({});
  });
  EXPECT_EQ(addressOf({browserWindow("A page - Netscape", "one.two.three", "Connect: ")}), "");
  EXPECT_FALSE(reading_.haveValidAddress);
}

TEST_F(BrowserScanTest, PassesOnAFailureOfEveryCall) {
  for (const WindowCall call :
       {WindowCall::EnumWindows, WindowCall::GetWindowTextA, WindowCall::GetClassNameA,
        WindowCall::GetParent, WindowCall::GetWindow, WindowCall::SendMessageA}) {
    windows_.failAt(call, 1, 68);
    EXPECT_EQ(failureNumberOf(
                  [this] { scan({browserWindow("A page - Netscape", "one.two.three", "Done")}); }),
              68);
  }
}

TEST(ReadWindowText, IsEmptyForAWindowWithoutText) {
  test::FakeWindowSystem windows;
  windows.show({{.windowClass = "Edit"}});
  EXPECT_EQ(readWindowText(windows, windows.windowOfClass("Edit")), "");
  EXPECT_EQ(readWindowText(windows, kNoWindow), "");
}

TEST(BrowserWindowCallback, GoesOnUntilThereIsABrowser) {
  test::FakeWindowSystem windows;
  windows.show({{.windowClass = "Editor", .title = "Text Editor"},
                browserWindow("A page - Netscape", "one.two.three", "")});
  BrowserReading reading;
  reading.webAddress = "left as it is";
  EXPECT_TRUE(browserWindowCallback(windows, windows.windowOfClass("Editor"), reading));
  EXPECT_EQ(reading.webAddress, "left as it is");
  EXPECT_FALSE(browserWindowCallback(windows, windows.windowOfClass("BrowserFrame"), reading));
  EXPECT_EQ(reading.webAddress, "one.two.three");
}

}  // namespace
}  // namespace quorrix
