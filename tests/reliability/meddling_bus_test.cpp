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

class MeddlingBusTest : public test::AccessibleWindowsStage {};

TEST_F(MeddlingBusTest, CostsNoPassMuchTime) {
  constexpr unsigned kBuses = 40;
  constexpr int kPasses = 60;
  FakeFirefox browser(bus_.address());
  browser.show("/one", firefoxWindow("A", "http://www.a.test/", true));
  list({&browser});
  const std::string path = bus_.address().substr(std::string("unix:path=").size());
  std::chrono::microseconds longest{};
  for (unsigned seed = 1; seed <= kBuses; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const test::MeddlingBus meddling(path, seed, 1 + seed % 20);
    setenv("AT_SPI_BUS_ADDRESS", meddling.address().c_str(), 1);
    for (int i = 0; i < kPasses; ++i) {
      static_cast<void>(pass());
      EXPECT_LT(duration(), kNoticeable);
      longest = std::max(longest, duration());
    }
  }
  std::cout << "measured: " << kBuses * kPasses << " passes on " << kBuses << " meddling buses, "
            << std::chrono::duration<double, std::milli>(longest).count() << " ms at most\n";
  setenv("AT_SPI_BUS_ADDRESS", bus_.address().c_str(), 1);
  browser.load("/one", "/one/last", "http://www.a.test/last");
  EXPECT_TRUE(test::eventually([&] { return pass().address == "http://www.a.test/last"; }));
}

}  // namespace
}  // namespace quorrix
