// Pages of GNOME Web that are gone for a while.
#include "platform/linux/gnome_web_page_reader.h"

#include <atspi/atspi-constants.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/linux/accessible_windows_stage.h"

namespace quorrix {
namespace {

using test::FakeBrowserWindow;
using test::FakeGnomeWeb;
using test::FakeObject;

class GnomeWebPageReaderTest : public test::AccessibleWindowsStage {
 protected:
  GnomeWebPageReaderTest() {
    setenv("DBUS_SESSION_BUS_ADDRESS", bus_.address().c_str(), 1);
    browser_.show("/one", {.name = "A", .address = "http://www.a.test/"});
    list({&browser_});
    static_cast<void>(statusWhenSeen("http://www.a.test/"));
  }

  FakeGnomeWeb browser_{bus_.address(), FakeBrowserWindow::Mark::Ordinary};
};

TEST_F(GnomeWebPageReaderTest, ReadsThePageOfARootThatWasGoneForAWhile) {
  browser_.pages().remove("/one/root");
  EXPECT_EQ(visitsIn(20), 0);
  browser_.load("/one", "/one/next", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
}

TEST_F(GnomeWebPageReaderTest, ReadsThePageOfARootThatWasEmptyForAWhile) {
  FakeObject empty;
  empty.role = ATSPI_ROLE_FILLER;
  browser_.pages().set("/one/root", empty);
  EXPECT_EQ(visitsIn(20), 0);
  browser_.load("/one", "/one/next", "http://www.b.test/");
  EXPECT_EQ(statusWhenSeen("http://www.b.test/"), "Connect: www.b.test");
}

}  // namespace
}  // namespace quorrix
