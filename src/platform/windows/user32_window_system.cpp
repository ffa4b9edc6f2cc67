#include "platform/windows/user32_window_system.h"

#include <windows.h>

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>

#include "platform/windows/wide_text.h"

namespace quorrix {
namespace {

static_assert(static_cast<unsigned>(WindowRelation::NextSibling) == GW_HWNDNEXT);
static_assert(static_cast<unsigned>(WindowRelation::FirstChild) == GW_CHILD);
static_assert(static_cast<unsigned>(WindowMessage::GetText) == WM_GETTEXT);
static_assert(static_cast<unsigned>(WindowMessage::GetTextLength) == WM_GETTEXTLENGTH);

// Longer titles, class names and texts are truncated: no address is this long, and a
// window may claim any length for its text.
constexpr std::size_t kLongestText = std::size_t{32} * 1024;

HWND toHwnd(WindowHandle window) { return reinterpret_cast<HWND>(window); }
WindowHandle fromHwnd(HWND window) { return reinterpret_cast<WindowHandle>(window); }

// Room for `buffer.size()` characters including the closing NUL, at most kLongestText.
std::wstring wideBufferFor(std::span<char> buffer) {
  return std::wstring(std::min(buffer.size(), kLongestText), L'\0');
}

int sizeOf(const std::wstring& text) { return static_cast<int>(text.size()); }

struct Enumeration {
  const std::function<bool(WindowHandle)>& callback;
  std::exception_ptr raised;
};

// An exception must not pass through user32, so it is stored and rethrown afterwards.
BOOL CALLBACK visitWindow(HWND window, LPARAM parameter) noexcept {
  auto& enumeration = *reinterpret_cast<Enumeration*>(parameter);
  try {
    return enumeration.callback(fromHwnd(window)) ? TRUE : FALSE;
  } catch (...) {
    enumeration.raised = std::current_exception();
    return FALSE;
  }
}

}  // namespace

void User32WindowSystem::EnumWindows(const std::function<bool(WindowHandle)>& callback) {
  silentThread_ = 0;
  Enumeration enumeration{callback, nullptr};
  ::EnumWindows(&visitWindow, reinterpret_cast<LPARAM>(&enumeration));
  if (enumeration.raised) std::rethrow_exception(enumeration.raised);
}

std::size_t User32WindowSystem::GetWindowTextA(WindowHandle window, std::span<char> buffer) {
  if (buffer.empty()) return 0;
  std::wstring wide = wideBufferFor(buffer);
  const int length = ::InternalGetWindowText(toHwnd(window), wide.data(), sizeOf(wide));
  return copyText(wide, static_cast<std::size_t>(std::max(length, 0)), buffer);
}

std::size_t User32WindowSystem::GetClassNameA(WindowHandle window, std::span<char> buffer) {
  if (buffer.empty()) return 0;
  std::wstring wide = wideBufferFor(buffer);
  const int length = ::GetClassNameW(toHwnd(window), wide.data(), sizeOf(wide));
  return copyText(wide, static_cast<std::size_t>(std::max(length, 0)), buffer);
}

WindowHandle User32WindowSystem::GetParent(WindowHandle window) {
  return fromHwnd(::GetParent(toHwnd(window)));
}

WindowHandle User32WindowSystem::GetWindow(WindowHandle window, WindowRelation relation) {
  return fromHwnd(::GetWindow(toHwnd(window), static_cast<UINT>(relation)));
}

std::size_t User32WindowSystem::SendMessageA(WindowHandle window, WindowMessage message,
                                             std::span<char> buffer) {
  const bool wantsText = message == WindowMessage::GetText;
  if (wantsText && buffer.empty()) return 0;
  if (!buffer.empty()) buffer.front() = '\0';
  const DWORD thread = ::GetWindowThreadProcessId(toHwnd(window), nullptr);
  if (thread == 0 || thread == silentThread_) return 0;

  std::wstring wide = wantsText ? wideBufferFor(buffer) : std::wstring();
  DWORD_PTR answer = 0;
  if (::SendMessageTimeoutW(toHwnd(window), static_cast<UINT>(message), wide.size(),
                            wantsText ? reinterpret_cast<LPARAM>(wide.data()) : 0,
                            SMTO_NORMAL | SMTO_ABORTIFHUNG | SMTO_ERRORONEXIT,
                            static_cast<UINT>(answerLimit_.count()), &answer) == 0) {
    silentThread_ = thread;
    return 0;
  }
  // The text in the code page may be longer than the window says.
  return wantsText ? copyText(wide, answer, buffer)
                   : std::min<std::size_t>(answer, kLongestText) * codePage_.longestCharacter();
}

// Copies the first `count` characters of `wide`, or as many as fit, and a NUL.
std::size_t User32WindowSystem::copyText(const std::wstring& wide, std::size_t count,
                                         std::span<char> buffer) const {
  const std::string text =
      codePage_.fromUtf8(utf8FromWide(std::wstring_view(wide).substr(0, count)));
  const std::size_t copied = std::min(text.size(), buffer.size() - 1);
  *std::copy_n(text.begin(), copied, buffer.begin()) = '\0';
  return copied;
}

}  // namespace quorrix
