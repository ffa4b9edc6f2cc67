#include "platform/linux/silent_buses.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>

#include "support/linux/fake_accessible_program.h"
#include "support/linux/silent_socket.h"
#include "support/linux/test_bus.h"

namespace quorrix {
namespace {

using std::chrono::steady_clock;
using test::FakeAccessibleProgram;
using test::SilentSocket;
using test::TestBus;

constexpr const char* kSession = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kAccessibility = "AT_SPI_BUS_ADDRESS";
constexpr const char* kService = "org.a11y.Bus";
constexpr const char* kNoBus = "disabled:";
constexpr const char* kNotSet = "(not set)";

// For buses that do not answer, and for those that do.
constexpr std::chrono::milliseconds kShort{100};
constexpr std::chrono::milliseconds kLong{20'000};

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : kNotSet;
}

class SilentBusesTest : public testing::Test {
 protected:
  SilentBusesTest() {
    unsetenv("XDG_RUNTIME_DIR");
    unsetenv(kSession);
    unsetenv(kAccessibility);
  }

  static void setSession(const std::string& address) { setenv(kSession, address.c_str(), 1); }
  static void setAccessibility(const std::string& address) {
    setenv(kAccessibility, address.c_str(), 1);
  }
};

TEST_F(SilentBusesTest, LeavesAHealthyDesktopAlone) {
  const TestBus session;
  const TestBus accessibility;
  FakeAccessibleProgram service(session.address(), kService);
  service.serveBusAddress(accessibility.address());
  setSession(session.address());
  const auto begin = steady_clock::now();
  const SilentBuses silent(kLong);
  const std::chrono::duration<double, std::milli> took = steady_clock::now() - begin;
  EXPECT_FALSE(silent.areHidden());
  EXPECT_EQ(variable(kSession), session.address());
  EXPECT_EQ(variable(kAccessibility), kNotSet);
  EXPECT_LT(took, kLong);
  std::cout << "measured: asking both buses of a healthy desktop took " << took.count() << " ms\n";
}

TEST_F(SilentBusesTest, LeavesADesktopWithoutBusesAlone) {
  const SilentBuses silent(kLong);
  EXPECT_FALSE(silent.areHidden());
  EXPECT_EQ(variable(kSession), kNotSet);
  EXPECT_EQ(variable(kAccessibility), kNotSet);
}

TEST_F(SilentBusesTest, LeavesAddressesAloneThatNobodyListensAt) {
  setSession("unix:path=/nonexistent/session");
  setAccessibility("tcp:host=localhost,port=1");
  const SilentBuses silent(kLong);
  EXPECT_FALSE(silent.areHidden());
  EXPECT_EQ(variable(kSession), "unix:path=/nonexistent/session");
  EXPECT_EQ(variable(kAccessibility), "tcp:host=localhost,port=1");
}

TEST_F(SilentBusesTest, LeavesADesktopWithoutAccessibilityAlone) {
  const TestBus session;
  setSession(session.address());
  const SilentBuses silent(kLong);
  EXPECT_FALSE(silent.areHidden());
}

TEST_F(SilentBusesTest, HidesASilentSessionBusUntilItIsRestored) {
  const SilentSocket socket;
  setSession(socket.address());
  SilentBuses silent(kShort);
  EXPECT_TRUE(silent.areHidden());
  EXPECT_EQ(variable(kSession), kNoBus);
  EXPECT_EQ(variable(kAccessibility), kNotSet);
  silent.restore();
  EXPECT_FALSE(silent.areHidden());
  EXPECT_EQ(variable(kSession), socket.address());
}

TEST_F(SilentBusesTest, HidesASilentSessionBusInItsUsualPlace) {
  const SilentSocket socket;
  setenv("XDG_RUNTIME_DIR", socket.folder().c_str(), 1);
  {
    const SilentBuses silent(kShort);
    EXPECT_EQ(variable(kSession), kNoBus);
  }
  EXPECT_EQ(variable(kSession), kNotSet);
}

TEST_F(SilentBusesTest, HidesASessionBusThatIsStopped) {
  TestBus session;
  setSession(session.address());
  session.freeze();
  const SilentBuses silent(kShort);
  EXPECT_EQ(variable(kSession), kNoBus);
  session.thaw();
}

TEST_F(SilentBusesTest, HidesABusWhoseQueueOfConnectionsIsFull) {
  SilentSocket socket(1);
  socket.fill();
  setSession(socket.address());
  setAccessibility(socket.address());
  const SilentBuses silent(kShort);
  EXPECT_EQ(variable(kSession), kNoBus);
  EXPECT_EQ(variable(kAccessibility), kNoBus);
}

TEST_F(SilentBusesTest, HidesASilentAccessibilityBus) {
  const TestBus session;
  const SilentSocket socket;
  setSession(session.address());
  setAccessibility(socket.address());
  SilentBuses silent(kShort);
  EXPECT_EQ(variable(kSession), session.address());
  EXPECT_EQ(variable(kAccessibility), kNoBus);
  silent.restore();
  EXPECT_EQ(variable(kAccessibility), socket.address());
}

TEST_F(SilentBusesTest, HidesASilentAccessibilityBusThatTheServiceNames) {
  const TestBus session;
  const SilentSocket socket;
  FakeAccessibleProgram service(session.address(), kService);
  service.serveBusAddress(socket.address());
  setSession(session.address());
  SilentBuses silent(kShort);
  EXPECT_EQ(variable(kSession), session.address());
  EXPECT_EQ(variable(kAccessibility), kNoBus);
  silent.restore();
  EXPECT_EQ(variable(kAccessibility), kNotSet);
}

TEST_F(SilentBusesTest, HidesAccessibilityIfItsServiceDoesNotAnswer) {
  const TestBus session;
  FakeAccessibleProgram service(session.address(), kService);
  service.freeze();
  setSession(session.address());
  const SilentBuses silent(kShort);
  EXPECT_EQ(variable(kSession), session.address());
  EXPECT_EQ(variable(kAccessibility), kNoBus);
  service.thaw();
}

TEST_F(SilentBusesTest, WaitsNoLongerThanItsPatienceForEach) {
  const SilentSocket socket;
  setSession(socket.address());
  setAccessibility(socket.address());
  const auto begin = steady_clock::now();
  const SilentBuses silent(kShort);
  const std::chrono::duration<double, std::milli> took = steady_clock::now() - begin;
  EXPECT_GE(took, 2 * kShort);
  EXPECT_LT(took, 2 * kShort + std::chrono::seconds(5)) << "on a busy machine";
}

}  // namespace
}  // namespace quorrix
