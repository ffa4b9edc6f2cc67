#include "platform/linux/session_name_owner.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "support/eventually.h"
#include "support/fake_clock.h"
#include "support/linux/fake_accessible_program.h"
#include "support/linux/test_bus.h"

namespace quorrix {
namespace {

using test::FakeAccessibleProgram;

constexpr const char* kName = "org.example.Browser";

class SessionNameOwnerTest : public testing::Test {
 protected:
  SessionNameOwnerTest() { setenv("DBUS_SESSION_BUS_ADDRESS", session_.address().c_str(), 1); }
  ~SessionNameOwnerTest() override { unsetenv("DBUS_SESSION_BUS_ADDRESS"); }

  // Whether it finds this answer in some of its next passes.
  bool finds(std::optional<std::uint32_t> processId) {
    return test::eventually([&] {
      clock_.advance(std::chrono::milliseconds(100));
      owner_.advance();
      return owner_.processId() == processId;
    });
  }

  static std::uint32_t idOf(const FakeAccessibleProgram& program) {
    return static_cast<std::uint32_t>(program.process());
  }

  test::TestBus session_;
  test::FakeClock clock_;
  SessionNameOwner owner_{clock_, kName};
};

TEST_F(SessionNameOwnerTest, IsUnknownAtFirstAndThenNobody) {
  EXPECT_EQ(owner_.processId(), std::nullopt);
  EXPECT_TRUE(finds(0));
}

TEST_F(SessionNameOwnerTest, IsTheProcessThatOwnsTheNameNow) {
  auto program = std::make_unique<FakeAccessibleProgram>(session_.address(), kName);
  EXPECT_TRUE(finds(idOf(*program)));
  program.reset();
  EXPECT_TRUE(finds(0));
  program = std::make_unique<FakeAccessibleProgram>(session_.address(), kName);
  EXPECT_TRUE(finds(idOf(*program)));
}

TEST_F(SessionNameOwnerTest, IsUnknownWhileThereIsNoSessionBus) {
  auto program = std::make_unique<FakeAccessibleProgram>(session_.address(), kName);
  ASSERT_TRUE(finds(idOf(*program)));
  session_.kill();
  EXPECT_TRUE(finds(std::nullopt));
  for (int pass = 0; pass < 30; ++pass) {
    clock_.advance(std::chrono::milliseconds(100));
    owner_.advance();
    EXPECT_EQ(owner_.processId(), std::nullopt);
  }
  session_.restart();
  program = std::make_unique<FakeAccessibleProgram>(session_.address(), kName);
  EXPECT_TRUE(finds(idOf(*program)));
}

}  // namespace
}  // namespace quorrix
