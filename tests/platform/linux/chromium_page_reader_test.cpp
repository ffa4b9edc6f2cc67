// Windows of Chromium that lack a part, or get other parts while they are read.
#include "platform/linux/chromium_page_reader.h"

#include <atspi/atspi-constants.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/linux/accessible_windows_stage.h"

namespace quorrix {
namespace {

using test::FakeChromium;
using test::FakeObject;

class ChromiumPageReaderTest : public test::AccessibleWindowsStage {
 protected:
  // Opens a window on http://www.a.test/, which is read.
  void open() {
    browser_.show("/one", chromiumWindow("A", "http://www.a.test/", true));
    list({&browser_});
    static_cast<void>(statusWhenSeen("http://www.a.test/"));
  }

  // Gives a panel other children.
  void setChildren(const std::string& path, const std::string& itsClass,
                   const std::vector<std::string>& children) {
    FakeObject panel;
    panel.role = ATSPI_ROLE_PANEL;
    panel.attributes = {{"class", itsClass}};
    panel.children = children;
    browser_.program().set(path, panel);
  }

  FakeChromium browser_{bus_.address()};
};

TEST_F(ChromiumPageReaderTest, TakesTheDocumentsAddressInAWindowWithoutTheView) {
  browser_.show("/one", chromiumWindow("A", "http://www.a.test/"));
  setChildren("/one/contents", "ContentsView", {"/one/side"});
  setChildren("/one/side", "ContentsWebView", {"/one/page"});
  list({&browser_});
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
  browser_.push("/one", "http://www.a.test/pushed");
  EXPECT_EQ(visitsIn(20), 0);
  browser_.load("/one", "/one/next", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
}

// As in a tab that was not loaded again after a start.
TEST_F(ChromiumPageReaderTest, KnowsAPageWithoutADocumentByItsAddress) {
  open();
  browser_.openSidePanel("/one");
  browser_.chooseTab("/one", "/one/none", "http://www.b.test/");
  browser_.program().remove("/one/none");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
  EXPECT_EQ(visitsIn(20), 0);
  browser_.push("/one", "http://www.c.test/");
  EXPECT_EQ(statusWhenSeen("http://www.c.test/"), "Connect: www.c.test");
}

TEST_F(ChromiumPageReaderTest, SeesNoVisitWithoutADocumentAndAnAddress) {
  open();
  browser_.openSidePanel("/one");
  browser_.chooseTab("/one", "/one/none", "http://www.b.test/");
  browser_.program().remove("/one/none");
  browser_.program().remove("/one/label");
  EXPECT_EQ(visitsIn(20), 0);
  browser_.load("/one", "/one/next", "http://www.c.test/");
  EXPECT_EQ(statusWhenSeen("http://www.c.test/"), "Connect: www.c.test");
}

TEST_F(ChromiumPageReaderTest, SeesNoVisitWhileTheDocumentIsReplaced) {
  open();
  browser_.program().remove("/one/page");
  browser_.push("/one", "http://www.b.test/");
  EXPECT_EQ(visitsIn(20), 0);
  browser_.load("/one", "/one/next", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
}

TEST_F(ChromiumPageReaderTest, FindsTheToolBarThatTheWindowHasCreatedAgain) {
  open();
  FakeObject label;
  label.role = ATSPI_ROLE_STATIC;
  label.description = "http://www.a.test/pushed";
  browser_.program().set("/one/again", label);
  setChildren("/one/bar", "MultiContentsViewMiniToolbar", {"/one/again"});
  browser_.program().remove("/one/label");
  EXPECT_EQ(statusWhenSeen("http://www.a.test/pushed"), "Connect: www.a.test");
}

TEST_F(ChromiumPageReaderTest, ReadsTheOneSideThatIsLeftOfASplitView) {
  open();
  browser_.split("/one", "/one/second", "http://www.b.test/", true);
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
  setChildren("/one/contents", "MultiContentsView", {"/one/side"});
  for (const char* const part : {"/one/side2", "/one/bar2", "/one/label2", "/one/second"}) {
    browser_.program().remove(part);
  }
  browser_.push("/one", "http://www.a.test/alone");
  EXPECT_EQ(statusWhenSeen("http://www.a.test/alone"), "Connect: www.a.test");
  EXPECT_EQ(visitsIn(20), 0);
}

}  // namespace
}  // namespace quorrix
