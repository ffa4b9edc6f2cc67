// The windows of the Windows desktop. Forwards the calls to user32.
//
// user32's own single-byte calls use the system's code page, which may have several bytes
// for a character. So this class calls the wide ones and converts their results.
#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <string>

#include "platform/code_page.h"
#include "platform/window_system.h"

namespace quorrix {

class User32WindowSystem final : public WindowSystem {
 public:
  // How long a window may take to answer a message. The user interface is blocked
  // until then.
  static constexpr std::chrono::milliseconds kAnswerLimit{200};

  // `codePage` must outlive this.
  explicit User32WindowSystem(const CodePage& codePage,
                              std::chrono::milliseconds answerLimit = kAnswerLimit)
      : codePage_(codePage), answerLimit_(answerLimit) {}

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
  std::size_t copyText(const std::wstring& wide, std::size_t count, std::span<char> buffer) const;

  const CodePage& codePage_;
  std::chrono::milliseconds answerLimit_;
  unsigned long silentThread_ = 0;
};

}  // namespace quorrix
