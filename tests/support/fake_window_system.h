// A desktop whose windows a test writes down as a table. Buffers are filled and
// cut as user32 does it; every call is noted, and can be made to fail.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/window_system.h"

namespace quorrix::test {

// Title is what GetWindowTextA gives, text what WM_GETTEXT gives.
struct FakeWindow {
  std::string windowClass = {};
  std::string title = {};
  std::string text = {};
  std::vector<FakeWindow> children = {};
  // The answer to WM_GETTEXTLENGTH, which may exceed what there is to read; none: the text's own.
  std::optional<std::size_t> announcedLength = {};
};

// A browser window as most tests need it: an address box, and a status bar.
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
    std::string windowClass;     // of the window asked about; empty for EnumWindows
    std::size_t bufferSize = 0;  // what the caller passed
  };

  // The top-level windows from now on, the one used last first. Windows shown
  // before are gone: asked about, they answer nothing.
  void show(std::vector<FakeWindow> windows);

  // From now on these browsers cannot be read.
  void setUnreadable(std::vector<UnreadableBrowser> browsers) { unreadable_ = std::move(browsers); }

  // Runs at the start of each EnumWindows with its number, counted from 1: the
  // place to show() something else.
  void atEachEnumeration(std::function<void(int enumeration)> action);

  // Runs before each call is answered; may throw, or show() something else.
  void beforeEachCall(std::function<void(const Call&)> action);

  // The n-th call of this kind from now on throws Failure(number).
  void failAt(WindowCall kind, int n, int number);

  [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }
  [[nodiscard]] int enumerations() const { return enumerations_; }
  [[nodiscard]] int preparations() const { return preparations_; }

  // The first window of this class, in the table's order; kNoWindow when there is none.
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
  // Handles are not used again, so that one kept too long names no other window.
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
