// A window system on a bus of its own, with a registry that lists the programs of the
// test. The clock is moved on by the tests. The accessibility service is real, and so are
// the waits for its answers, but conditions that must hold for a second take no real time.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/accessible_window_system.h"
#include "support/code_pages.h"
#include "support/eventually.h"
#include "support/fake_clock.h"
#include "support/linux/fake_accessible_program.h"
#include "support/linux/fake_browsers.h"
#include "support/linux/test_bus.h"

namespace quorrix::test {

inline constexpr const char* kRegistry = "org.a11y.atspi.Registry";

// A pass shorter than kAtOnce waits for no answer, even on a machine with other work to
// do.
inline constexpr std::chrono::milliseconds kAtOnce{15};
inline constexpr std::chrono::milliseconds kLongestPass{150};

// What the scan sees in one pass.
struct Seen {
  std::vector<std::string> titles;
  std::string address;  // of the first window
  std::string status;
};

class AccessibleWindowsStage : public testing::Test {
 protected:
  AccessibleWindowsStage() {
    unsetenv("XDG_RUNTIME_DIR");
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("AT_SPI_BUS_ADDRESS", bus_.address().c_str(), 1);
    startRegistry();
  }

  void startRegistry() {
    registry_ = std::make_unique<FakeAccessibleProgram>(bus_.address(), kRegistry);
    registry_->set(FakeAccessibleProgram::kRoot, {});
  }

  void list(const std::vector<FakeBrowser*>& browsers,
            const std::vector<FakeAccessibleProgram*>& others = {}) {
    FakeObject root;
    for (const FakeAccessibleProgram* program : others) {
      root.children.push_back(program->uniqueName() + FakeAccessibleProgram::kRoot);
    }
    for (const FakeBrowser* browser : browsers) root.children.push_back(browser->root());
    registry_->set(FakeAccessibleProgram::kRoot, root);
  }

  static FakeBrowserWindow firefoxWindow(const std::string& title, const std::string& address,
                                         bool isActive = false) {
    return {
        .name = title + " \xE2\x80\x94 Mozilla Firefox", .address = address, .isActive = isActive};
  }
  static FakeBrowserWindow chromiumWindow(const std::string& title, const std::string& address,
                                          bool isActive = false) {
    return {.name = title + " - Chromium", .address = address, .isActive = isActive};
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
    clock_.advance(std::chrono::milliseconds(100));
    Seen seen;
    const long before = timesWaited();
    windows_.EnumWindows([&](WindowHandle window) {
      seen.titles.push_back(textOf(window));
      if (seen.titles.size() > 1) return true;
      const WindowHandle box = windows_.GetWindow(window, WindowRelation::FirstChild);
      seen.address = textOf(windows_.GetWindow(box, WindowRelation::FirstChild));
      seen.status = textOf(windows_.GetWindow(box, WindowRelation::NextSibling));
      return true;
    });
    hasWaited_ = timesWaited() != before;
    return seen;
  }

  // Passes until one shows `address`. Returns the status text of that pass.
  std::string statusWhenSeen(const std::string& address) {
    Seen seen;
    EXPECT_TRUE(eventually([&] {
      seen = pass();
      return seen.address == address;
    })) << "last seen: "
        << seen.address;
    return seen.status;
  }

  // As statusWhenSeen(), but with pauses between passes as the program makes them.
  std::string statusWhenSeenInTime(const std::string& address) {
    Seen seen;
    EXPECT_TRUE(eventually([&] {
      std::this_thread::sleep_for(windows_.timeToNextPass());
      seen = pass();
      return seen.address == address;
    })) << "last seen: "
        << seen.address;
    return seen.status;
  }

  // Passes until one reports a visit.
  bool reportsAVisit() {
    return eventually([this] { return visitsIn(1) == 1; });
  }

  // Runs this many passes; returns how many of them reported a visit.
  int visitsIn(int passes) {
    int visits = 0;
    for (int i = 0; i < passes; ++i) visits += pass().status.starts_with("Connect:") ? 1 : 0;
    return visits;
  }

  [[nodiscard]] std::chrono::microseconds duration() const {
    return windows_.passStatistics().duration;
  }

  // Whether the last pass waited for anything. Unlike its duration, this does not depend on
  // what else the machine does.
  [[nodiscard]] bool hasWaited() const { return hasWaited_; }

  // Whether the program has stopped waiting in its passes. On a busy machine, a few
  // passes may still wait for the registry, which answers as soon as it gets to run.
  [[nodiscard]] bool waitsNoMore() {
    constexpr int kPasses = 12;
    int waits = 0;
    for (int i = 0; i < kPasses; ++i) {
      static_cast<void>(pass());
      EXPECT_LT(duration(), kLongestPass);
      if (duration() >= kAtOnce) ++waits;
    }
    return waits <= kPasses / 2;
  }

  static long timesWaited() {
    struct rusage usage {};
    ::getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
  }

  bool hasWaited_ = false;
  TestBus bus_;
  FakeClock clock_;
  std::unique_ptr<FakeAccessibleProgram> registry_;
  std::optional<std::vector<std::string>> stack_ = std::vector<std::string>();
  std::vector<BrowserProcess> processes_;
  AccessibleWindowSystem windows_{
      clock_,
      westernCodePage(),
      {.stack = [this] { return stack_; }, .browserProcesses = [this] { return processes_; }}};
};

}  // namespace quorrix::test
