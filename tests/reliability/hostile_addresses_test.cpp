// Addresses and titles as a hostile page or window may have them: invalid UTF-8, direction
// marks, schemes in odd places, megabytes. Whatever is recorded is a whole record that
// loads again.
#include <gtest/gtest.h>

#include <iostream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "sitetree/site_file.h"
#include "support/counting_event_pump.h"
#include "support/fake_clock.h"
#include "support/fake_tracking_display.h"
#include "support/fake_window_system.h"
#include "support/memory_file_system.h"
#include "support/scripted_message_box.h"
#include "tracking/tracking_loop.h"

namespace quorrix {
namespace {

constexpr std::size_t kRecordLength = 322;
constexpr std::size_t kAddressLength = 300;
constexpr int kVisits = 4000;

// Neither system's windows pass on an address with a blank, a NUL or a control character.
const std::string kPieces[] = {"http://",
                               "https://",
                               "ftp://",
                               "HTTP:",
                               "//",
                               "/",
                               ".",
                               "..",
                               "www.",
                               "a.b.c",
                               "example.org",
                               "?",
                               "#",
                               "%00",
                               "%2F",
                               "~",
                               "\xE2\x80\xAE",
                               "\xE2\x80\x8F",
                               "\xC3",
                               "\xC0\x80",
                               "\xED\xA0\x80",
                               "\xFF\xFE",
                               "\x80\xA0\xAD",
                               "\xF4\x90\x80\x80",
                               "ROOT",
                               "xn--",
                               "[::1]",
                               "user:pass@",
                               ":99999",
                               "////",
                               std::string(301, 'x'),
                               std::string(285, 'y')};

class HostileAddresses : public testing::Test {
 protected:
  HostileAddresses() {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
    siteFile_.loadNodes(tree_);
  }

  // Half of them begin like an address that is recorded.
  std::string hostileText() {
    std::string text = random_() % 2 == 0 ? "" : "http://www.a.b/";
    for (unsigned left = random_() % 8; left > 0; --left) {
      text += kPieces[random_() % std::size(kPieces)];
    }
    return text;
  }

  void trackWhileShowing(const std::vector<test::FakeWindow>& windows) {
    const int last = static_cast<int>(windows.size());
    windows_.atEachEnumeration([&windows, last, this](int pass) {
      if (pass == last) loop_.stopTracking();
      windows_.show({windows[static_cast<std::size_t>(pass - 1)]});
    });
    loop_.startTracking();
  }

  const std::string& file() { return memory_.bytesOf("Data/nodes.dat"); }

  std::mt19937 random_{1};
  test::MemoryFileSystem memory_;
  test::FakeClock clock_;
  WorkingPaths paths_;
  SiteFile siteFile_{memory_, clock_, paths_};
  SiteTree tree_;
  test::FakeWindowSystem windows_;
  test::CountingEventPump events_;
  test::ScriptedMessageBox messageBox_;
  test::FakeTrackingDisplay display_;
  TrackingLoop loop_{{.windows = windows_,
                      .tree = tree_,
                      .siteFile = siteFile_,
                      .events = events_,
                      .messageBox = messageBox_,
                      .display = display_}};
};

TEST_F(HostileAddresses, LeaveWholeRecordsThatLoadAgain) {
  std::vector<test::FakeWindow> windows;
  windows.reserve(kVisits);
  for (int i = 0; i < kVisits; ++i) {
    windows.push_back(test::browserWindow(hostileText() + " - Netscape", hostileText(),
                                          "Connect: " + hostileText()));
  }
  trackWhileShowing(windows);
  ASSERT_EQ(file().size() % kRecordLength, 0U);
  std::set<std::string> addresses;
  for (std::size_t at = 0; at < file().size(); at += kRecordLength) {
    const std::string field = file().substr(at, kAddressLength);
    EXPECT_NE(field.front(), ' ');
    const std::string address = field.substr(0, field.find(' '));
    EXPECT_EQ(address.find('\0'), std::string::npos);
    EXPECT_EQ(field.substr(address.size()), std::string(kAddressLength - address.size(), ' '));
    EXPECT_TRUE(addresses.insert(address).second) << "two records of one address";
  }
  EXPECT_GT(addresses.size(), 100U);
  SiteTree again;
  siteFile_.loadNodes(again);
  EXPECT_EQ(again.size(), tree_.size());
  for (NodeId node = 0; node < tree_.size(); ++node) {
    EXPECT_NE(again.find(tree_.key(node)), kNoNode) << tree_.key(node);
  }
  std::cout << "measured: " << kVisits << " visits of hostile addresses left " << addresses.size()
            << " whole records\n";
}

TEST_F(HostileAddresses, OfAMegabyteAreNotRecorded) {
  const std::string address = "http://www.a.b/" + std::string(1'000'000, 'x');
  trackWhileShowing({test::browserWindow(std::string(1'000'000, 'x') + " - Netscape", address,
                                         "Connect: " + address)});
  EXPECT_EQ(file(), "");
}

}  // namespace
}  // namespace quorrix
