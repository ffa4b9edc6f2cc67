// An accessibility bus that sends changed bytes: the handshake, the headers of messages
// and their contents may be anything. No pass takes long, nothing crashes, and the browser
// is read again once the bus is replaced.
#include "support/linux/meddling_bus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include "platform/linux/accessible_windows_stage.h"

namespace quorrix {
namespace {

using test::FakeFirefox;

// A user would notice a longer pass. Most of it may be other work of a busy machine.
constexpr std::chrono::milliseconds kNoticeable{500};

const std::string kTitle = "A \x97 Mozilla Firefox - Netscape";  // in the code page
const std::string kAddress = "http://www.a.test/";

class MeddlingBusTest : public test::AccessibleWindowsStage {
 protected:
  MeddlingBusTest() {
    browser_.show("/one", firefoxWindow("A", kAddress, true));
    list({&browser_});
  }

  // The path of the socket of the bus.
  [[nodiscard]] std::string path() const {
    return bus_.address().substr(std::string("unix:path=").size());
  }

  // The browser is read as soon as the bus is itself again.
  void expectToReadWithoutMeddling() {
    setenv("AT_SPI_BUS_ADDRESS", bus_.address().c_str(), 1);
    browser_.load("/one", "/one/last", "http://www.a.test/last");
    EXPECT_TRUE(test::eventually([&] { return pass().address == "http://www.a.test/last"; }));
  }

  FakeFirefox browser_{bus_.address()};
};

TEST_F(MeddlingBusTest, CostsNoPassMuchTime) {
  constexpr unsigned kBuses = 40;
  constexpr int kPasses = 60;
  int windows = 0;
  int changed = 0;
  int closed = 0;
  std::chrono::microseconds longest{};
  for (unsigned seed = 1; seed <= kBuses; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const test::MeddlingBus meddling(path(), test::changingRandomBits(seed, 1 + seed % 20));
    setenv("AT_SPI_BUS_ADDRESS", meddling.address().c_str(), 1);
    for (int i = 0; i < kPasses; ++i) {
      const test::Seen seen = pass();
      EXPECT_LT(duration(), kNoticeable);
      longest = std::max(longest, duration());
      if (seen.titles.empty()) continue;
      ++windows;
      const bool isAddressRead = !seen.address.empty();
      if (seen.titles[0] != kTitle || (isAddressRead && seen.address != kAddress)) ++changed;
    }
    closed += meddling.connectionsClosedByClients();
  }
  EXPECT_GT(windows, 0);
  EXPECT_GT(closed, 0);
  std::cout << "measured: " << kBuses * kPasses << " passes on " << kBuses << " meddling buses, "
            << std::chrono::duration<double, std::milli>(longest).count() << " ms at most; "
            << windows << " passes saw a window, " << changed << " with changed texts; " << closed
            << " connections closed\n";
  expectToReadWithoutMeddling();
}

TEST_F(MeddlingBusTest, MayChangeOneTextIntoAnother) {
  const test::MeddlingBus meddling(path(), test::replacing("www.a.test", "www.b.test"));
  setenv("AT_SPI_BUS_ADDRESS", meddling.address().c_str(), 1);
  EXPECT_TRUE(test::eventually([&] { return pass().address == "http://www.b.test/"; }));
  EXPECT_EQ(meddling.connectionsClosedByClients(), 0);
}

// The D-Bus library closes the connection instead of handing on such a text.
TEST_F(MeddlingBusTest, PassesNoTextOnThatIsNotUtf8) {
  for (const std::string& text : {std::string("www.\xFF.test"), std::string("www.\0.test", 10)}) {
    const test::MeddlingBus meddling(path(), test::replacing("www.a.test", text));
    setenv("AT_SPI_BUS_ADDRESS", meddling.address().c_str(), 1);
    EXPECT_TRUE(test::eventually([&] {
      EXPECT_EQ(pass().address, "");
      EXPECT_LT(duration(), kNoticeable);
      return meddling.connectionsClosedByClients() >= 3;
    }));
  }
  expectToReadWithoutMeddling();
}

}  // namespace
}  // namespace quorrix
