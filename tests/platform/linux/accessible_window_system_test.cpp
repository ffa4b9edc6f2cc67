#include "platform/linux/accessible_window_system.h"

#include <atspi/atspi-constants.h>
#include <dbus/dbus.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "support/eventually.h"
#include "support/fake_clock.h"
#include "support/linux/fake_accessible_program.h"
#include "support/linux/test_bus.h"

namespace quorrix {
namespace {

using test::FakeAccessibleProgram;
using test::FakeObject;

constexpr std::uint64_t kActive = std::uint64_t{1} << ATSPI_STATE_ACTIVE;
constexpr std::uint64_t kFocused = std::uint64_t{1} << ATSPI_STATE_FOCUSED;
constexpr const char* kRegistry = "org.a11y.atspi.Registry";
constexpr std::chrono::milliseconds kLongestPass{500};

// What the scan gets to see in one pass.
struct Seen {
  std::string title;  // of the browser window that was read; empty for none
  std::string address;
  std::string status;
  std::vector<std::string> passedOver;  // titles of windows that are no browser's
};

class AccessibleWindowSystemTest : public testing::Test {
 protected:
  AccessibleWindowSystemTest() {
    unsetenv("XDG_RUNTIME_DIR");
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("AT_SPI_BUS_ADDRESS", bus_.address().c_str(), 1);
    clock_.advanceWheneverAsked(std::chrono::milliseconds(100));
    startRegistry();
  }

  void startRegistry() {
    registry_ = std::make_unique<FakeAccessibleProgram>(bus_.address(), kRegistry);
    registry_->set(FakeAccessibleProgram::kRoot, {});
  }

  std::unique_ptr<FakeAccessibleProgram> startProgram() {
    return std::make_unique<FakeAccessibleProgram>(bus_.address());
  }

  void list(const std::vector<FakeAccessibleProgram*>& programs) {
    FakeObject root;
    for (const FakeAccessibleProgram* program : programs) {
      root.children.push_back(program->uniqueName() + FakeAccessibleProgram::kRoot);
    }
    registry_->set(FakeAccessibleProgram::kRoot, root);
  }

  static void show(FakeAccessibleProgram& program, const std::vector<std::string>& frames) {
    FakeObject root;
    root.children = frames;
    program.set(FakeAccessibleProgram::kRoot, root);
  }

  static FakeObject frame(const std::string& title, const std::string& document,
                          std::uint64_t states = 0) {
    FakeObject object;
    object.role = ATSPI_ROLE_FRAME;
    object.name = title;
    object.embeds = document;
    object.states = states;
    return object;
  }

  static FakeObject document(const std::string& address, const std::string& attribute = "DocURL") {
    FakeObject object;
    object.role = ATSPI_ROLE_DOCUMENT_WEB;
    object.addressAttribute = attribute;
    object.address = address;
    return object;
  }

  // A program with one window "/frame" on the page "/page".
  std::unique_ptr<FakeAccessibleProgram> startBrowser(const std::string& title,
                                                      const std::string& address,
                                                      std::uint64_t states = 0) {
    auto browser = startProgram();
    browser->set("/frame", frame(title, "/page", states));
    browser->set("/page", document(address));
    show(*browser, {"/frame"});
    return browser;
  }

  std::string textOf(WindowHandle window) {
    std::array<char, 256> buffer;
    return {buffer.data(), windows_.GetWindowTextA(window, buffer)};
  }

  std::string classOf(WindowHandle window) {
    std::array<char, 256> buffer;
    return {buffer.data(), windows_.GetClassNameA(window, buffer)};
  }

  Seen pass() {
    Seen seen;
    windows_.EnumWindows([&](WindowHandle window) {
      const std::string title = textOf(window);
      if (!title.ends_with(" - Browser")) {
        seen.passedOver.push_back(title);
        return true;
      }
      seen.title = title;
      const WindowHandle box = windows_.GetWindow(window, WindowRelation::FirstChild);
      seen.address = textOf(windows_.GetWindow(box, WindowRelation::FirstChild));
      seen.status = textOf(windows_.GetWindow(box, WindowRelation::NextSibling));
      return false;
    });
    return seen;
  }

  // Passes until one sees `address`; the status text of that pass.
  std::string statusWhenSeen(const std::string& address) {
    Seen seen;
    EXPECT_TRUE(test::eventually([&] {
      seen = pass();
      return seen.address == address;
    })) << "last seen: "
        << seen.address;
    return seen.status;
  }

  std::vector<std::string> enumerate() {
    std::vector<std::string> titles;
    windows_.EnumWindows([&](WindowHandle window) {
      titles.push_back(textOf(window));
      return true;
    });
    return titles;
  }

  [[nodiscard]] std::chrono::microseconds duration() const {
    return windows_.passStatistics().duration;
  }

  test::TestBus bus_;
  test::FakeClock clock_;
  std::unique_ptr<FakeAccessibleProgram> registry_;
  std::vector<std::string> stack_;  // titles, topmost first
  AccessibleWindowSystem windows_{
      clock_,
      {.isBrowserTitle = [](std::string_view title) { return title.ends_with(" - Browser"); },
       .titlesOfWindowStack = [this] { return stack_; }}};
};

TEST_F(AccessibleWindowSystemTest, ShowsABrowserAsTheWindowsThatTheScanLooksFor) {
  const auto browser = startBrowser("Page \xE2\x80\x94 Browser", "http://www.a.test/b");
  list({browser.get()});
  int windows = 0;
  windows_.EnumWindows([&](WindowHandle window) {
    ++windows;
    EXPECT_EQ(textOf(window), "Page \x97 Browser");
    EXPECT_EQ(classOf(window), "BrowserFrame");
    EXPECT_EQ(windows_.GetParent(window), kNoWindow);
    const WindowHandle box = windows_.GetWindow(window, WindowRelation::FirstChild);
    EXPECT_EQ(classOf(box), "ComboBox");
    EXPECT_EQ(windows_.GetParent(box), window);
    const WindowHandle edit = windows_.GetWindow(box, WindowRelation::FirstChild);
    EXPECT_EQ(classOf(edit), "Edit");
    EXPECT_EQ(windows_.GetParent(edit), box);
    EXPECT_EQ(textOf(edit), "http://www.a.test/b");
    EXPECT_EQ(windows_.SendMessageA(edit, WindowMessage::GetTextLength, {}), 19U);
    EXPECT_EQ(windows_.GetWindow(edit, WindowRelation::FirstChild), kNoWindow);
    EXPECT_EQ(windows_.GetWindow(edit, WindowRelation::NextSibling), kNoWindow);
    const WindowHandle status = windows_.GetWindow(box, WindowRelation::NextSibling);
    EXPECT_EQ(classOf(status), "msctls_statusbar32");
    EXPECT_EQ(textOf(status), "Connect: www.a.test");
    EXPECT_EQ(windows_.GetWindow(status, WindowRelation::NextSibling), kNoWindow);
    return true;
  });
  EXPECT_EQ(windows, 1);
}

TEST_F(AccessibleWindowSystemTest, CopiesNoMoreThanTheBufferHolds) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  list({browser.get()});
  windows_.EnumWindows([&](WindowHandle window) {
    const WindowHandle box = windows_.GetWindow(window, WindowRelation::FirstChild);
    std::array<char, 4> four{};
    EXPECT_EQ(windows_.GetClassNameA(box, four), 3U);
    EXPECT_STREQ(four.data(), "Com");
    EXPECT_EQ(windows_.SendMessageA(box, WindowMessage::GetText, four), 3U);
    EXPECT_STREQ(four.data(), "htt");
    std::array<char, 1> one{'x'};
    EXPECT_EQ(windows_.GetWindowTextA(window, one), 0U);
    EXPECT_EQ(one[0], '\0');
    EXPECT_EQ(windows_.GetWindowTextA(window, {}), 0U);
    return true;
  });
}

TEST_F(AccessibleWindowSystemTest, DropsTheMiddleOfALongTitle) {
  const auto browser = startBrowser("The beginning of a long title - Browser", "http://a.test/");
  list({browser.get()});
  windows_.EnumWindows([&](WindowHandle window) {
    std::array<char, 22> buffer{};
    EXPECT_EQ(windows_.GetWindowTextA(window, buffer), 21U);
    EXPECT_STREQ(buffer.data(), "The beginni - Browser");
    return true;
  });
}

TEST_F(AccessibleWindowSystemTest, ReportsAVisitInOnePass) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  list({browser.get()});
  EXPECT_EQ(pass().status, "Connect: a.test");
  EXPECT_EQ(pass().status, "Done");
  browser->set("/page", document("http://www.b.test/c"));
  EXPECT_EQ(pass().status, "Connect: www.b.test");
  EXPECT_EQ(pass().status, "Done");
}

TEST_F(AccessibleWindowSystemTest, ReadsThePageOnceItHasADocument) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  browser->set("/frame", frame("A - Browser", ""));
  list({browser.get()});
  EXPECT_EQ(pass().address, "");
  browser->set("/frame", frame("A - Browser", "/page"));
  const Seen seen = pass();
  EXPECT_EQ(seen.address, "http://a.test/");
  EXPECT_EQ(seen.status, "Connect: a.test");
}

TEST_F(AccessibleWindowSystemTest, PutsTheActiveWindowFirstAndKeepsItThere) {
  const auto first = startBrowser("1 - Browser", "http://a.test/");
  const auto second = startBrowser("2 - Browser", "http://b.test/");
  list({first.get(), second.get()});
  static_cast<void>(pass());
  second->set("/frame", frame("2 - Browser", "/page", kActive));
  EXPECT_EQ(statusWhenSeen("http://b.test/").substr(0, 8), "Connect:");
  second->set("/frame", frame("2 - Browser", "/page"));
  EXPECT_EQ(pass().title, "2 - Browser");
  first->set("/frame", frame("1 - Browser", "/page", kActive));
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  first->set("/frame", frame("1 - Browser", "/page"));
  EXPECT_EQ(pass().title, "1 - Browser");
}

TEST_F(AccessibleWindowSystemTest, ReadsNoneOfSeveralBrowsersUntilOneIsUsed) {
  const auto first = startBrowser("1 - Browser", "http://a.test/");
  const auto second = startBrowser("2 - Browser", "http://b.test/");
  const auto editor = startBrowser("Editor", "http://secret.test/");
  list({first.get(), second.get(), editor.get()});
  for (int i = 0; i < 12; ++i) {
    const Seen seen = pass();
    EXPECT_EQ(seen.title, "");
    EXPECT_EQ(seen.passedOver, std::vector<std::string>{"Editor"});
  }
  second->set("/frame", frame("2 - Browser", "/page", kActive));
  EXPECT_EQ(pass().status, "Connect: b.test");
  second->set("/frame", frame("2 - Browser", "/page"));
  EXPECT_EQ(pass().title, "2 - Browser");
}

TEST_F(AccessibleWindowSystemTest, ReadsTheOneThatIsLeftOfSeveralUnusedBrowsers) {
  const auto first = startBrowser("1 - Browser", "http://a.test/");
  const auto second = startBrowser("2 - Browser", "http://b.test/");
  list({first.get(), second.get()});
  EXPECT_EQ(pass().title, "");
  list({first.get()});
  EXPECT_EQ(pass().status, "Connect: a.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsTheTopmostOfSeveralUnusedBrowsers) {
  const auto first = startBrowser("1 - Browser", "http://a.test/");
  const auto second = startBrowser("2 \xE2\x80\x94 Browser - Browser", "http://b.test/");
  list({first.get(), second.get()});
  stack_ = {"Quorrix", "2 \xE2\x80\x94 Browser - Browser", "Editor", "1 - Browser"};
  EXPECT_EQ(pass().status, "Connect: b.test");
  // Once the order is known, only use changes it.
  stack_ = {"1 - Browser", "2 \xE2\x80\x94 Browser - Browser"};
  EXPECT_EQ(pass().address, "http://b.test/");
  first->set("/frame", frame("1 - Browser", "/page", kActive));
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
}

TEST_F(AccessibleWindowSystemTest, TrustsNoStackThatLacksABrowser) {
  const auto first = startBrowser("1 - Browser", "http://a.test/");
  const auto second = startBrowser("2 - Browser", "http://b.test/");
  list({first.get(), second.get()});
  stack_ = {"2 - Browser"};
  EXPECT_EQ(pass().title, "");
}

TEST_F(AccessibleWindowSystemTest, FindsTheOrderAnewWhenTrackingStartsAgain) {
  const auto first = startBrowser("1 - Browser", "http://a.test/");
  const auto second = startBrowser("2 - Browser", "http://b.test/");
  list({first.get(), second.get()});
  stack_ = {"1 - Browser", "2 - Browser"};
  EXPECT_EQ(pass().status, "Connect: a.test");
  // Used while nobody tracked, and on another page now.
  second->set("/frame", frame("3 - Browser", "/page"));
  stack_ = {"3 - Browser", "1 - Browser"};
  windows_.prepareForTracking();
  EXPECT_EQ(pass().status, "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, PutsANewWindowInFrontOnlyIfItIsActive) {
  const auto browser = startBrowser("1 - Browser", "http://a.test/", kActive);
  list({browser.get()});
  EXPECT_EQ(pass().title, "1 - Browser");
  browser->set("/frame", frame("1 - Browser", "/page"));
  browser->set("/idle", frame("2 - Browser", "/page"));
  show(*browser, {"/idle", "/frame"});
  EXPECT_EQ(pass().title, "1 - Browser");
  browser->set("/chosen", frame("3 - Browser", "/page", kActive));
  show(*browser, {"/idle", "/frame", "/chosen"});
  EXPECT_EQ(pass().title, "3 - Browser");
}

TEST_F(AccessibleWindowSystemTest, SkipsPopupsAndWhatIsNoFrame) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  browser->set("/popup", frame("", "", kActive));
  FakeObject dialog = frame("Save - Browser", "", kActive);
  dialog.role = ATSPI_ROLE_DIALOG;
  browser->set("/dialog", dialog);
  show(*browser, {"/popup", "/dialog", "/frame"});
  list({browser.get()});
  EXPECT_EQ(enumerate(), std::vector<std::string>{"A - Browser"});
}

TEST_F(AccessibleWindowSystemTest, ShowsAPopupThatBecomesAWindow) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  browser->set("/late", frame("", "/page2", kActive));
  browser->set("/page2", document("http://b.test/"));
  show(*browser, {"/late", "/frame"});
  list({browser.get()});
  EXPECT_EQ(pass().title, "A - Browser");
  browser->set("/late", frame("B - Browser", "/page2", kActive));
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, NeverAsksForThePageOfAWindowThatIsNotRead) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  const auto other = startBrowser("Secret", "http://secret.test/", kActive);
  list({other.get(), browser.get()});
  for (int i = 0; i < 12; ++i) EXPECT_EQ(pass().address, "http://a.test/");
  for (const std::string& call : other->takeCalls()) {
    EXPECT_TRUE(call == "/org/a11y/atspi/accessible/root GetChildren" || call == "/frame Get" ||
                call == "/frame GetRole" || call == "/frame GetState" ||
                call == "/org/a11y/atspi/accessible/root GetApplicationBusAddress")
        << call;
  }
}

TEST_F(AccessibleWindowSystemTest, LooksAtOtherProgramsOnlyNowAndThen) {
  const auto browser = startBrowser("A - Browser", "http://a.test/", kActive);
  const auto other = startBrowser("Editor", "http://secret.test/");
  list({other.get(), browser.get()});
  EXPECT_EQ(pass().address, "http://a.test/");
  static_cast<void>(other->takeCalls());
  for (int i = 0; i < 4; ++i) static_cast<void>(pass());
  EXPECT_EQ(other->takeCalls(), std::vector<std::string>{});
  for (int i = 0; i < 5; ++i) static_cast<void>(pass());
  EXPECT_EQ(other->takeCalls(),
            (std::vector<std::string>{"/org/a11y/atspi/accessible/root GetChildren", "/frame Get",
                                      "/frame GetState"}));
}

TEST_F(AccessibleWindowSystemTest, NeedsFewCallsForAPass) {
  const auto first = startBrowser("1 - Browser", "http://a.test/", kActive);
  const auto second = startBrowser("2 - Browser", "http://b.test/");
  list({first.get(), second.get()});
  EXPECT_EQ(pass().title, "1 - Browser");
  first->set("/frame", frame("1 - Browser", "/page"));
  second->set("/frame", frame("2 - Browser", "/page", kActive));
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
  EXPECT_EQ(pass().status, "Done");
  // The programs, two times their windows, the first window's state, its title, its
  // relations and the attributes of its document.
  EXPECT_EQ(windows_.passStatistics().calls, 7U);
}

TEST_F(AccessibleWindowSystemTest, NeverAsksItsOwnProcess) {
  DBusConnection* own = dbus_connection_open_private(bus_.address().c_str(), nullptr);
  ASSERT_NE(own, nullptr);
  ASSERT_TRUE(dbus_bus_register(own, nullptr));
  dbus_connection_set_exit_on_disconnect(own, FALSE);
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  FakeObject root;
  root.children = {dbus_bus_get_unique_name(own) + std::string(FakeAccessibleProgram::kRoot),
                   browser->uniqueName() + FakeAccessibleProgram::kRoot};
  registry_->set(FakeAccessibleProgram::kRoot, root);
  EXPECT_EQ(pass().address, "http://a.test/");
  EXPECT_LT(duration(), AccessibleWindowSystem::kPassLimit);
  dbus_connection_read_write(own, 0);
  bool wasAsked = false;
  while (DBusMessage* message = dbus_connection_pop_message(own)) {
    wasAsked |= dbus_message_get_type(message) == DBUS_MESSAGE_TYPE_METHOD_CALL;
    dbus_message_unref(message);
  }
  EXPECT_FALSE(wasAsked);
  dbus_connection_close(own);
  dbus_connection_unref(own);
}

TEST_F(AccessibleWindowSystemTest, AnswersNothingForAWindowClosedInMidPass) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  list({browser.get()});
  static_cast<void>(pass());
  int windows = 0;
  windows_.EnumWindows([&](WindowHandle window) {
    ++windows;
    browser->remove("/frame");
    std::array<char, 8> buffer{'x'};
    EXPECT_EQ(windows_.GetWindowTextA(window, buffer), 0U);
    EXPECT_EQ(buffer[0], '\0');
    return true;
  });
  EXPECT_EQ(windows, 1);
  show(*browser, {});
  EXPECT_EQ(enumerate(), std::vector<std::string>{});
}

TEST_F(AccessibleWindowSystemTest, KnowsNoHandleOfAnEarlierPass) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  list({browser.get()});
  WindowHandle old = kNoWindow;
  windows_.EnumWindows([&](WindowHandle window) {
    old = window;
    return false;
  });
  ASSERT_NE(old, kNoWindow);
  static_cast<void>(pass());
  EXPECT_EQ(textOf(old), "");
  EXPECT_EQ(windows_.GetWindow(old, WindowRelation::FirstChild), kNoWindow);
  EXPECT_EQ(windows_.GetParent(old), kNoWindow);
  EXPECT_EQ(windows_.SendMessageA(old, WindowMessage::GetTextLength, {}), 0U);
}

TEST_F(AccessibleWindowSystemTest, WaitsForAFrozenBrowserOnlyOnce) {
  const auto browser = startBrowser("A - Browser", "http://a.test/", kActive);
  list({browser.get()});
  static_cast<void>(pass());
  browser->freeze();
  EXPECT_EQ(pass().status, "Done");
  EXPECT_LT(duration(), kLongestPass);
  for (int i = 0; i < 10; ++i) {
    const Seen seen = pass();
    EXPECT_EQ(seen.title, "A - Browser");
    EXPECT_EQ(seen.address, "http://a.test/");
    EXPECT_EQ(seen.status, "Done");
    EXPECT_LT(duration(), AccessibleWindowSystem::kPassLimit / 2);
  }
  browser->thaw();
  browser->set("/page", document("http://b.test/"));
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, ReadsAnotherBrowserWhileOneIsFrozen) {
  const auto frozen = startBrowser("1 - Browser", "http://a.test/", kActive);
  const auto other = startBrowser("2 - Browser", "http://b.test/");
  list({frozen.get(), other.get()});
  static_cast<void>(pass());
  other->set("/frame", frame("2 - Browser", "/page", kActive));
  frozen->set("/frame", frame("1 - Browser", "/page"));
  static_cast<void>(statusWhenSeen("http://b.test/"));
  frozen->freeze();
  static_cast<void>(pass());
  EXPECT_LT(duration(), kLongestPass);
  other->set("/page", document("http://c.test/"));
  EXPECT_EQ(statusWhenSeen("http://c.test/"), "Connect: c.test");
  EXPECT_LT(duration(), AccessibleWindowSystem::kPassLimit / 2);
}

TEST_F(AccessibleWindowSystemTest, ForgetsABrowserThatIsKilledWhileFrozen) {
  const auto browser = startBrowser("1 - Browser", "http://a.test/", kActive);
  list({browser.get()});
  static_cast<void>(pass());
  browser->freeze();
  static_cast<void>(pass());
  browser->kill();
  list({});
  EXPECT_TRUE(test::eventually([&] { return enumerate().empty(); }));
}

TEST_F(AccessibleWindowSystemTest, WaitsForAFrozenBusOnlyOnce) {
  const auto browser = startBrowser("A - Browser", "http://a.test/", kActive);
  list({browser.get()});
  static_cast<void>(pass());
  bus_.freeze();
  static_cast<void>(pass());
  EXPECT_LT(duration(), kLongestPass);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(pass().status, "Done");
    EXPECT_LT(duration(), AccessibleWindowSystem::kPassLimit / 2);
  }
  bus_.thaw();
  browser->set("/page", document("http://b.test/"));
  EXPECT_EQ(statusWhenSeen("http://b.test/"), "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, WaitsOnceForABusThatIsFrozenFromTheStart) {
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  list({browser.get()});
  bus_.freeze();
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(pass().title, "");
    EXPECT_LT(duration(), i == 0 ? kLongestPass : AccessibleWindowSystem::kPassLimit / 2);
  }
  bus_.thaw();
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
}

TEST_F(AccessibleWindowSystemTest, GoesOnWhenTheBusIsBack) {
  auto browser = startBrowser("A - Browser", "http://a.test/");
  list({browser.get()});
  static_cast<void>(pass());
  bus_.kill();
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(pass().title, "");
    EXPECT_LT(duration(), kLongestPass);
  }
  bus_.restart();
  startRegistry();
  browser = startBrowser("A - Browser", "http://a.test/");
  list({browser.get()});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Done");
  browser->set("/page", document("http://b.test/"));
  EXPECT_EQ(pass().status, "Connect: b.test");
}

TEST_F(AccessibleWindowSystemTest, FindsTheBusThroughTheSessionAndSwitchesItOn) {
  unsetenv("AT_SPI_BUS_ADDRESS");
  test::TestBus session;
  setenv("DBUS_SESSION_BUS_ADDRESS", session.address().c_str(), 1);
  FakeAccessibleProgram service(session.address(), "org.a11y.Bus");
  service.serveBusAddress(bus_.address());
  const auto browser = startBrowser("A - Browser", "http://a.test/");
  list({browser.get()});
  EXPECT_EQ(statusWhenSeen("http://a.test/"), "Connect: a.test");
  EXPECT_FALSE(service.isSwitchedOn());
  windows_.prepareForTracking();
  EXPECT_TRUE(test::eventually([&] {
    static_cast<void>(pass());
    return service.isSwitchedOn();
  }));
}

TEST_F(AccessibleWindowSystemTest, SwitchesItOnWhenTheSessionAnswersAtLast) {
  test::TestBus session;
  setenv("DBUS_SESSION_BUS_ADDRESS", session.address().c_str(), 1);
  FakeAccessibleProgram service(session.address(), "org.a11y.Bus");
  service.freeze();
  windows_.prepareForTracking();
  for (int i = 0; i < 10; ++i) {
    static_cast<void>(pass());
    EXPECT_LT(duration(), i == 0 ? kLongestPass : AccessibleWindowSystem::kPassLimit / 2);
  }
  service.thaw();
  EXPECT_TRUE(test::eventually([&] {
    static_cast<void>(pass());
    return service.isSwitchedOn();
  }));
}

// A browser whose document does not follow history.pushState, and whose address bar
// lies in a tool bar beside an entry that is none.
class StaleAddressTest : public AccessibleWindowSystemTest {
 protected:
  StaleAddressTest() {
    browser_ = startProgram();
    FakeObject window = frame("A - Browser", "/page", kActive);
    window.children = {"/panel"};
    browser_->set("/frame", window);
    browser_->set("/panel", container(ATSPI_ROLE_PANEL, {"/page", "/find", "/tools"}));
    browser_->set("/find", entry("a.test/wrong"));
    browser_->set("/tools", container(ATSPI_ROLE_TOOL_BAR, {"/button", "/box"}));
    browser_->set("/button", container(ATSPI_ROLE_PUSH_BUTTON, {}));
    browser_->set("/box", container(ATSPI_ROLE_PANEL, {"/bar"}));
    browser_->set("/bar", entry("a.test"));
    browser_->set("/page", document("http://www.a.test/", "URI"));
    show(*browser_, {"/frame"});
    list({browser_.get()});
  }

  static FakeObject container(std::uint32_t role, const std::vector<std::string>& children) {
    FakeObject object;
    object.role = role;
    object.children = children;
    return object;
  }

  static FakeObject entry(const std::string& text, std::uint64_t states = 0) {
    FakeObject object;
    object.role = ATSPI_ROLE_ENTRY;
    object.text = text;
    object.states = states;
    return object;
  }

  std::unique_ptr<FakeAccessibleProgram> browser_;
};

TEST_F(StaleAddressTest, FollowsTheAddressBar) {
  EXPECT_EQ(statusWhenSeen("http://www.a.test/"), "Connect: www.a.test");
  browser_->set("/bar", entry("a.test/pushed"));
  EXPECT_EQ(statusWhenSeen("http://www.a.test/pushed"), "Connect: www.a.test");
  EXPECT_EQ(pass().status, "Done");
}

TEST_F(StaleAddressTest, DoesNotFollowWhatIsTyped) {
  static_cast<void>(statusWhenSeen("http://www.a.test/"));
  browser_->set("/bar", entry("a.test/half", kFocused));
  for (int i = 0; i < 5; ++i) EXPECT_EQ(pass().address, "http://www.a.test/");
}

TEST_F(StaleAddressTest, NeverLooksIntoTheDocument) {
  for (int i = 0; i < 5; ++i) static_cast<void>(pass());
  const std::vector<std::string> calls = browser_->takeCalls();
  EXPECT_EQ(std::ranges::count(calls, "/page GetChildren"), 0);
  EXPECT_EQ(std::ranges::count(calls, "/box GetChildren"), 1);
}

TEST_F(StaleAddressTest, NeedsFewCallsForAPass) {
  for (int i = 0; i < 5; ++i) static_cast<void>(pass());
  EXPECT_EQ(pass().address, "http://www.a.test/");
  EXPECT_EQ(windows_.passStatistics().calls, 7U);
}

TEST_F(StaleAddressTest, FindsTheAddressBarAgainWhenTheWindowMakesANewOne) {
  for (int i = 0; i < 5; ++i) static_cast<void>(pass());
  browser_->remove("/bar");
  browser_->set("/newbar", entry("a.test/pushed"));
  browser_->set("/box", container(ATSPI_ROLE_PANEL, {"/newbar"}));
  EXPECT_EQ(statusWhenSeen("http://www.a.test/pushed"), "Connect: www.a.test");
}

}  // namespace
}  // namespace quorrix
