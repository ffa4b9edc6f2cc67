// The windows of the Windows desktop, as the browser scan sees them: those of classic
// programs as user32 gives them, and among them, in the order of the desktop, a classic
// window that is played (browsers/played_windows.h) in front of each ordinary window of
// Firefox, Chromium and Google Chrome. Their own windows, and all others that are built
// from the same parts, are not seen.
//
// One enumeration is one pass. It asks each browser at most one question, and waits at
// most kPassLimit for all answers, whatever state the browsers are in. An answer that
// arrives later is used in a later pass, and until then that browser is not asked again.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/browsers/browser_presentation.h"
#include "platform/browsers/played_windows.h"
#include "platform/browsers/window_kind.h"
#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/deadline.h"
#include "platform/windows/browser_window.h"
#include "platform/windows/msaa_page_reader.h"
#include "platform/windows/question_thread.h"
#include "platform/windows/user32_window_system.h"

namespace quorrix {

class DesktopWindowSystem final : public WindowSystem {
 public:
  static constexpr std::chrono::milliseconds kPassLimit{50};

  // The clock and the page must outlive this.
  DesktopWindowSystem(Clock& clock, const CodePage& codePage);

  void prepareForTracking() override;

  // Shorter than usual while an answer is missing, for two seconds at most, but never so
  // short that passes take more than a fifth of the time.
  [[nodiscard]] std::chrono::milliseconds timeToNextPass() const override;

  void EnumWindows(const std::function<bool(WindowHandle)>& callback) override;
  std::size_t GetWindowTextA(WindowHandle window, std::span<char> buffer) override;
  std::size_t GetClassNameA(WindowHandle window, std::span<char> buffer) override;
  [[nodiscard]] WindowHandle GetParent(WindowHandle window) override;
  [[nodiscard]] WindowHandle GetWindow(WindowHandle window, WindowRelation relation) override;
  std::size_t SendMessageA(WindowHandle window, WindowMessage message,
                           std::span<char> buffer) override;

  [[nodiscard]] std::vector<UnreadableBrowser> unreadableBrowsers() const override;

  // How long the last pass took.
  [[nodiscard]] std::chrono::microseconds passDuration() const { return duration_; }

 private:
  struct Window {
    HWND handle = nullptr;
    DWORD process = 0;
    BrowserKind browser{};
    std::chrono::milliseconds firstSeen{};
    std::string name;  // the last ordinary accessible name, UTF-8
    WindowKind kind = WindowKind::Unsettled;
    bool isVisible = false;  // in this pass
    bool isNamed = false;    // its text names the browser, in this pass
  };
  // A browser process. The reader is used only on the thread, which also destroys it.
  struct Process {
    std::unique_ptr<QuestionThread> thread;
    std::shared_ptr<MsaaPageReader> reader;
    std::shared_ptr<std::vector<WindowAnswer>> answers;  // to the last question; null if taken
    bool isLate = false;
    unsigned hurries = 0;  // questions whose answers are not waited for, after a late one
  };

  void beginPass();
  void listWindows();
  void ask();
  void await();
  void takeAnswers();
  void take(const WindowAnswer& answer);
  void settle(Window& window, const WindowAnswer& answer);
  void play();
  void showPage();
  [[nodiscard]] bool isDue(const Window& window) const;
  [[nodiscard]] const Window* front() const;
  [[nodiscard]] Window* find(HWND handle);
  [[nodiscard]] bool isAnswerMissing() const;

  Clock& clock_;
  User32WindowSystem classic_;
  PlayedWindows played_;
  BrowserPresentation presentation_;
  WindowKinds kinds_;
  BrowserWindowList list_;
  std::vector<Window> windows_;  // visible ones first, in the order of the desktop
  std::map<DWORD, Process> processes_;
  std::vector<HWND> ordinary_;           // of this pass, as played
  std::optional<WindowAnswer> reading_;  // of the front window, in this pass
  HWND front_ = nullptr;                 // the window whose page was to be shown last
  std::chrono::milliseconds frontSince_{};
  unsigned pass_ = 0;
  std::chrono::milliseconds lastComplete_{};
  std::chrono::microseconds duration_{};
};

}  // namespace quorrix
