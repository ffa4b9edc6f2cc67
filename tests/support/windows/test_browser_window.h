// A window that looks to user32 like a browser's: a title, an address box that is
// the edit of a real combo box, and a real status bar. It lives on a thread of its
// own, so that reading it sends messages across threads, as with a browser.
//
// It is never shown. Nothing that the scan asks depends on that, and two threads
// that paint text at once can lock each other out for good in Wine 8.
#pragma once

#include <functional>
#include <future>
#include <string>
#include <thread>

#include "platform/window_system.h"

namespace quorrix::test {

class TestBrowserWindow {
 public:
  // Returns once the window is there, in front of every other one.
  explicit TestBrowserWindow(const std::wstring& title);
  ~TestBrowserWindow();
  TestBrowserWindow(const TestBrowserWindow&) = delete;
  TestBrowserWindow& operator=(const TestBrowserWindow&) = delete;

  void shows(const std::wstring& title);
  void typeAddress(const std::wstring& address);
  void says(const std::wstring& status);

  // Answers no message any more, like a program that hangs, until it wakes up or
  // is destroyed. Both are for once.
  void hangs();
  void wakesUp();

  [[nodiscard]] WindowHandle frame() const { return frame_; }
  [[nodiscard]] WindowHandle addressCombo() const { return combo_; }
  [[nodiscard]] WindowHandle addressEdit() const { return edit_; }
  [[nodiscard]] WindowHandle statusBar() const { return status_; }

 private:
  void live(const std::wstring& title, std::promise<void>& ready);
  void createControls(const std::wstring& title);

  // On the window's thread; returns when the operation has.
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
