#include "platform/linux/bus_connection.h"

#include <gtest/gtest.h>

#include <string>

#include "support/eventually.h"
#include "support/linux/silent_socket.h"
#include "support/linux/test_bus.h"

namespace quorrix {
namespace {

using test::TestBus;

constexpr std::chrono::milliseconds kOneWait{10};

bool becomesReady(BusConnection& connection) {
  return test::eventually([&connection] {
    connection.exchange(kOneWait);
    return connection.isReady();
  });
}

Message questionToTheBus() {
  return Message(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                              DBUS_INTERFACE_DBUS, "GetId"));
}

TEST(BusConnection, IsReadyOnceTheBusHasAnsweredTheIntroduction) {
  const TestBus bus;
  const auto connection = BusConnection::open(bus.address());
  ASSERT_NE(connection, nullptr);
  EXPECT_TRUE(connection->isOpen());
  EXPECT_FALSE(connection->isReady());
  EXPECT_TRUE(becomesReady(*connection));
}

TEST(BusConnection, OpensABusWithAnAbstractAddress) {
  const TestBus bus({.isAbstract = true});
  const auto connection = BusConnection::open(bus.address());
  ASSERT_NE(connection, nullptr);
  EXPECT_TRUE(becomesReady(*connection));
}

TEST(BusConnection, OpensTheFirstAddressThatAcceptsIt) {
  const TestBus bus;
  const auto connection = BusConnection::open("tcp:host=127.0.0.1,port=1;unix:path=/nonexistent;" +
                                              bus.address() + ";");
  ASSERT_NE(connection, nullptr);
  EXPECT_TRUE(becomesReady(*connection));
}

// Connecting to other transports could wait, and some of them start a program.
TEST(BusConnection, OpensNothingButNamedLocalSockets) {
  for (const std::string& addresses :
       {std::string(), std::string(";"), std::string("nonsense"), std::string("unix:path"),
        std::string("unix:runtime=yes"), std::string("unix:tmpdir=/tmp"),
        std::string("unixexec:path=/bin/true"), std::string("autolaunch:"),
        std::string("tcp:host=127.0.0.1,port=1"), std::string("disabled:"),
        "unix:path=/" + std::string(200, 'x'), "unix:abstract=" + std::string(200, 'x')}) {
    EXPECT_EQ(BusConnection::open(addresses), nullptr) << addresses;
    EXPECT_FALSE(BusConnection::isQueueFull(addresses)) << addresses;
  }
}

TEST(BusConnection, ClosesWhenTheBusRefusesTheIntroduction) {
  const TestBus bus({.mostClients = 1});
  const auto first = BusConnection::open(bus.address());
  ASSERT_NE(first, nullptr);
  ASSERT_TRUE(becomesReady(*first));
  const auto second = BusConnection::open(bus.address());
  ASSERT_NE(second, nullptr);
  EXPECT_TRUE(test::eventually([&second] {
    second->exchange(kOneWait);
    return !second->isOpen();
  }));
  EXPECT_FALSE(second->isReady());
  EXPECT_TRUE(first->isReady());
}

TEST(BusConnection, ClosesWhenTheBusGoesAwayAndCannotSendAnyMore) {
  TestBus bus;
  const auto connection = BusConnection::open(bus.address());
  ASSERT_NE(connection, nullptr);
  ASSERT_TRUE(becomesReady(*connection));
  bus.kill();
  EXPECT_TRUE(test::eventually([&connection] {
    connection->exchange(kOneWait);
    return !connection->isOpen();
  }));
  EXPECT_FALSE(connection->isReady());
  PendingCall call = connection->send(questionToTheBus());
  EXPECT_TRUE(isCompleted(call));
  EXPECT_EQ(takeAnswer(call), nullptr);
}

TEST(BusConnection, KnowsABusWhoseQueueIsFull) {
  test::SilentSocket socket(1);
  EXPECT_FALSE(BusConnection::isQueueFull(socket.address()));
  socket.fill();
  EXPECT_TRUE(BusConnection::isQueueFull("unix:path=/nonexistent;" + socket.address()));
  EXPECT_EQ(BusConnection::open(socket.address()), nullptr);
}

}  // namespace
}  // namespace quorrix
