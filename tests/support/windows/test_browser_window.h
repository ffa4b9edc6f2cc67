// A window that looks to user32 like a browser's: a title, an address box that is the
// edit of a real combo box, and a real status bar. It has a thread of its own, so that
// reading it sends messages across threads, as with a browser.
//
// It is never shown. The scan does not depend on that, and in Wine 8 two threads that
// paint text at the same time can deadlock.
#pragma once

#include <functional>
#include <future>
#include <string>
#include <thread>

#include "platform/window_system.h"

namespace quorrix::test {

class TestBrowserWindow {
 public:
  // Returns once the window exists, in front of all others.
  explicit TestBrowserWindow(const std::wstring& title);
  ~TestBrowserWindow();
  TestBrowserWindow(const TestBrowserWindow&) = delete;
  TestBrowserWindow& operator=(const TestBrowserWindow&) = delete;

  void shows(const std::wstring& title);
  void typeAddress(const std::wstring& address);
  void says(const std::wstring& status);

  // Stops answering messages, like a program that hangs, until it wakes up or is
  // destroyed. A window can hang only once.
  void hangs();
  void wakesUp();

  [[nodiscard]] WindowHandle frame() const { return frame_; }
  [[nodiscard]] WindowHandle addressCombo() const { return combo_; }
  [[nodiscard]] WindowHandle addressEdit() const { return edit_; }
  [[nodiscard]] WindowHandle statusBar() const { return status_; }

 private:
  void live(const std::wstring& title, std::promise<void>& ready);
  void createControls(const std::wstring& title);

  // Runs the operation on the window's thread, and returns when it has ended.
  void runThere(const std::function<void()>& operation);

  WindowHandle frame_ = kNoWindow;
  WindowHandle combo_ = kNoWindow;
  WindowHandle edit_ = kNoWindow;
  WindowHandle status_ = kNoWindow;
  std::promise<void> awake_;
  std::future<void> untilAwake_ = awake_.get_future();
  bool isAwake_ = false;
  std::thread thread_;
};

}  // namespace quorrix::test
