// A desktop whose windows a test describes in a table. Buffers are filled and cut as
// user32 does it. Every call is recorded, and can be made to fail.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/window_system.h"

namespace quorrix::test {

// `title` is what GetWindowTextA gives, `text` what WM_GETTEXT gives.
struct FakeWindow {
  std::string windowClass = {};
  std::string title = {};
  std::string text = {};
  std::vector<FakeWindow> children = {};
  // The answer to WM_GETTEXTLENGTH, which may exceed the length of the text; nullopt:
  // that length.
  std::optional<std::size_t> announcedLength = {};
};

// A browser window as most tests need it, with an address box and a status bar.
[[nodiscard]] FakeWindow browserWindow(std::string title, std::string address,
                                       std::string statusText);

enum class WindowCall {
  EnumWindows,
  GetWindowTextA,
  GetClassNameA,
  GetParent,
  GetWindow,
  SendMessageA,
};

class FakeWindowSystem final : public WindowSystem {
 public:
  struct Call {
    WindowCall kind;
    std::string windowClass;     // of the window in question; empty for EnumWindows
    std::size_t bufferSize = 0;  // as the caller passed it
  };

  // Sets the top-level windows, the most recently used one first. The windows shown
  // before are gone: calls for them return nothing.
  void show(std::vector<FakeWindow> windows);

  // From now on these browsers cannot be read.
  void setUnreadable(std::vector<UnreadableBrowser> browsers) { unreadable_ = std::move(browsers); }

  // Runs at the start of each EnumWindows with its number, counted from 1. It may show()
  // other windows.
  void atEachEnumeration(std::function<void(int enumeration)> action);

  // Runs before each call is answered; may throw, or show() other windows.
  void beforeEachCall(std::function<void(const Call&)> action);

  // The n-th call of this kind from now on throws Failure(number).
  void failAt(WindowCall kind, int n, int number);

  [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }
  [[nodiscard]] int enumerations() const { return enumerations_; }
  [[nodiscard]] int preparations() const { return preparations_; }

  // The first window of this class, in the order of the table; kNoWindow if there is
  // none.
  [[nodiscard]] WindowHandle windowOfClass(const std::string& windowClass) const;

  void prepareForTracking() override { ++preparations_; }
  void EnumWindows(const std::function<bool(WindowHandle)>& callback) override;
  std::size_t GetWindowTextA(WindowHandle window, std::span<char> buffer) override;
  std::size_t GetClassNameA(WindowHandle window, std::span<char> buffer) override;
  [[nodiscard]] WindowHandle GetParent(WindowHandle window) override;
  [[nodiscard]] WindowHandle GetWindow(WindowHandle window, WindowRelation relation) override;
  std::size_t SendMessageA(WindowHandle window, WindowMessage message,
                           std::span<char> buffer) override;
  [[nodiscard]] std::vector<UnreadableBrowser> unreadableBrowsers() const override {
    return unreadable_;
  }

 private:
  struct Entry {
    FakeWindow window;
    WindowHandle parent = kNoWindow;
    WindowHandle firstChild = kNoWindow;
    WindowHandle nextSibling = kNoWindow;
  };
  struct Fault {
    WindowCall kind;
    int callsLeft;
    int number;
  };

  WindowHandle add(const std::vector<FakeWindow>& siblings, WindowHandle parent);
  [[nodiscard]] const Entry* entryOf(WindowHandle window) const;
  void note(WindowCall kind, WindowHandle window, std::size_t bufferSize);

  std::vector<Entry> entries_;
  // Handles are not reused, so a handle that is kept too long does not refer to another
  // window.
  WindowHandle firstHandle_ = 1;
  std::vector<UnreadableBrowser> unreadable_;
  std::vector<Call> calls_;
  std::vector<Fault> faults_;
  std::function<void(int)> eachEnumeration_;
  std::function<void(const Call&)> eachCall_;
  int enumerations_ = 0;
  int preparations_ = 0;
};

}  // namespace quorrix::test
