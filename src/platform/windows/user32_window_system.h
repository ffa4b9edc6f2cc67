// The windows of the Windows desktop. Forwards the calls to user32.
//
// user32's own single-byte calls use the code page that the machine is set to. So this
// class calls the wide ones and converts their results to Windows-1252.
#pragma once

#include <chrono>

#include "platform/window_system.h"

namespace quorrix {

class User32WindowSystem final : public WindowSystem {
 public:
  // How long a window may take to answer a message. The user interface is blocked
  // until then.
  static constexpr std::chrono::milliseconds kAnswerLimit{200};

  User32WindowSystem() = default;
  explicit User32WindowSystem(std::chrono::milliseconds answerLimit) : answerLimit_(answerLimit) {}

  void EnumWindows(const std::function<bool(WindowHandle)>& callback) override;

  // The title as the system keeps it. The window is not asked, so a browser that hangs
  // has its title too.
  std::size_t GetWindowTextA(WindowHandle window, std::span<char> buffer) override;
  std::size_t GetClassNameA(WindowHandle window, std::span<char> buffer) override;

  [[nodiscard]] WindowHandle GetParent(WindowHandle window) override;
  [[nodiscard]] WindowHandle GetWindow(WindowHandle window, WindowRelation relation) override;

  // A window that exceeds the limit is not asked again before the next enumeration, and
  // neither are the others of its thread: a scan waits at most once for a browser that
  // hangs. The system copies the text of another program's window. A window of another
  // thread of this program writes into the buffer itself, so it must not stop answering
  // between two messages; Quorrix has no such window.
  std::size_t SendMessageA(WindowHandle window, WindowMessage message,
                           std::span<char> buffer) override;

 private:
  std::chrono::milliseconds answerLimit_ = kAnswerLimit;
  unsigned long silentThread_ = 0;
};

}  // namespace quorrix
