#include "platform/linux/accessibility_service.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>

#include "support/eventually.h"
#include "support/fake_clock.h"
#include "support/linux/fake_accessible_program.h"
#include "support/linux/test_bus.h"

namespace quorrix {
namespace {

using test::FakeAccessibleProgram;

constexpr const char* kBusAddress = "unix:path=/run/accessibility";

// A session bus, and the service that a test starts on it.
class AccessibilityServiceTest : public testing::Test {
 protected:
  AccessibilityServiceTest() { setenv("DBUS_SESSION_BUS_ADDRESS", session_.address().c_str(), 1); }
  ~AccessibilityServiceTest() override { unsetenv("DBUS_SESSION_BUS_ADDRESS"); }

  void startService() {
    running_.reset();  // gives up its name
    running_ = std::make_unique<FakeAccessibleProgram>(session_.address(), "org.a11y.Bus");
    running_->serveBusAddress(kBusAddress);
  }

  void pass(AccessibilityService& service) {
    clock_.advance(std::chrono::milliseconds(100));
    service.advance(Deadline(std::chrono::milliseconds(50)));
  }
  void passes(int count) {
    for (int i = 0; i < count; ++i) pass(service_);
  }

  bool findsTheAddress() {
    return test::eventually([this] {
      pass(service_);
      return service_.takeBusAddress() == kBusAddress;
    });
  }
  bool isSwitchedOnInTime(AccessibilityService& service) {
    return test::eventually([&] {
      pass(service);
      return service.isSwitchedOn();
    });
  }

  // How often the service has been called with this method since the last time.
  auto callsOf(const std::string& member) {
    const auto calls = running_->takeCalls();
    return std::ranges::count(calls, "/org/a11y/bus " + member);
  }

  test::TestBus session_;
  std::unique_ptr<FakeAccessibleProgram> running_;
  test::FakeClock clock_;
  AccessibilityService service_{clock_};
};

TEST_F(AccessibilityServiceTest, ReturnsTheAddressOnce) {
  startService();
  service_.requestBusAddress();
  EXPECT_TRUE(findsTheAddress());
  EXPECT_EQ(service_.takeBusAddress(), std::nullopt);
  passes(10);
  EXPECT_EQ(service_.takeBusAddress(), std::nullopt);
}

TEST_F(AccessibilityServiceTest, SwitchesOnAndLeavesAloneWhatIsOn) {
  startService();
  service_.requestSwitchOn();
  EXPECT_TRUE(isSwitchedOnInTime(service_));
  EXPECT_TRUE(running_->isSwitchedOn());
  EXPECT_EQ(callsOf("Set"), 1);
  AccessibilityService later(clock_);
  later.requestSwitchOn();
  EXPECT_TRUE(isSwitchedOnInTime(later));
  EXPECT_EQ(callsOf("Set"), 0);
}

TEST_F(AccessibilityServiceTest, AsksAgainUntilThereIsAService) {
  service_.requestBusAddress();
  service_.requestSwitchOn();
  passes(20);
  EXPECT_EQ(service_.takeBusAddress(), std::nullopt);
  EXPECT_FALSE(service_.isSwitchedOn());
  startService();
  EXPECT_TRUE(findsTheAddress());
  EXPECT_TRUE(isSwitchedOnInTime(service_));
  EXPECT_TRUE(running_->isSwitchedOn());
}

TEST_F(AccessibilityServiceTest, AsksAgainAfterAnAddressThatIsNoText) {
  startService();
  running_->answerWrongly("GetAddress");
  service_.requestBusAddress();
  passes(20);
  EXPECT_EQ(service_.takeBusAddress(), std::nullopt);
  EXPECT_GT(callsOf("GetAddress"), 1);
  startService();
  EXPECT_TRUE(findsTheAddress());
}

TEST_F(AccessibilityServiceTest, SwitchesNothingWhoseStateIsNotKnown) {
  for (const auto& spoil :
       {&FakeAccessibleProgram::answerWrongly, &FakeAccessibleProgram::refuse}) {
    startService();
    (*running_.*spoil)("Get");
    AccessibilityService service(clock_);
    service.requestSwitchOn();
    for (int i = 0; i < 20; ++i) pass(service);
    EXPECT_FALSE(service.isSwitchedOn());
    EXPECT_FALSE(running_->isSwitchedOn());
    startService();
    EXPECT_TRUE(isSwitchedOnInTime(service));
  }
}

TEST_F(AccessibilityServiceTest, IsNotSwitchedOnIfThatIsRefused) {
  startService();
  running_->refuse("Set");
  service_.requestSwitchOn();
  pass(service_);
  EXPECT_FALSE(service_.isSwitchedOn());
  startService();
  EXPECT_TRUE(isSwitchedOnInTime(service_));
  EXPECT_TRUE(running_->isSwitchedOn());
}

TEST_F(AccessibilityServiceTest, AsksAgainWhenTheSessionBusIsBack) {
  startService();
  running_->freeze();
  service_.requestBusAddress();
  passes(3);
  session_.kill();
  passes(20);
  EXPECT_EQ(service_.takeBusAddress(), std::nullopt);
  session_.restart();
  startService();
  EXPECT_TRUE(findsTheAddress());
}

}  // namespace
}  // namespace quorrix
