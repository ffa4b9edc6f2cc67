#include "platform/windows/browser_window.h"

#include <dwmapi.h>

#include <array>
#include <string>
#include <string_view>

#include "platform/browsers/browser_titles.h"
#include "platform/windows/process_program.h"
#include "platform/windows/wide_text.h"

namespace quorrix {
namespace {

constexpr std::wstring_view kFirefoxClass = L"MozillaWindowClass";
constexpr std::wstring_view kChromiumClass = L"Chrome_WidgetWin_1";

struct Browser {
  BrowserKind kind;
  std::wstring_view program;
};

constexpr Browser kBrowsers[] = {
    {BrowserKind::Firefox, L"firefox.exe"},
    {BrowserKind::GoogleChrome, L"chrome.exe"},
    {BrowserKind::Chromium, L"chrome.exe"},
};

std::wstring classOf(HWND window) {
  std::array<wchar_t, 64> name{};
  const int length = ::GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return {name.data(), static_cast<std::size_t>(length)};
}

// As the system keeps it. A window of another program is not asked.
std::string textOf(HWND window) {
  std::array<wchar_t, 1024> text{};
  const int length = ::GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return utf8FromWide({text.data(), static_cast<std::size_t>(length)});
}

bool isVisible(HWND window) {
  DWORD cloaked = 0;
  const HRESULT result = ::DwmGetWindowAttribute(window, DWMWA_CLOAKED, &cloaked, sizeof cloaked);
  return ::IsWindowVisible(window) && !::IsIconic(window) && !(SUCCEEDED(result) && cloaked != 0);
}

bool isProgram(DWORD process, std::wstring_view name) {
  const std::wstring its = programOf(process).filename().wstring();
  return ::CompareStringOrdinal(its.data(), static_cast<int>(its.size()), name.data(),
                                static_cast<int>(name.size()), TRUE) == CSTR_EQUAL;
}

// The window text of a private window of Chromium is that of an ordinary one. The text is
// compared first, because asking for the program of a process takes longer.
std::optional<BrowserKind> browserOf(HWND window, DWORD process) {
  const std::string text = textOf(window);
  const bool isOfFirefox = classOf(window) == kFirefoxClass;
  for (const Browser& browser : kBrowsers) {
    const bool isOfTheClass = (browser.kind == BrowserKind::Firefox) == isOfFirefox;
    if (!isOfTheClass || titleKind(browser.kind, text) == TitleKind::NotOrdinary) continue;
    if (isProgram(process, browser.program)) return browser.kind;
  }
  return std::nullopt;
}

BOOL CALLBACK collect(HWND window, LPARAM list) noexcept {
  if (!isLikeTodaysBrowsers(window) || !isVisible(window)) return TRUE;
  if (::GetWindow(window, GW_OWNER) != nullptr) return TRUE;
  try {
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (const auto browser = browserOf(window, process)) {
      reinterpret_cast<std::vector<BrowserWindow>*>(list)->push_back({window, process, *browser});
    }
    return TRUE;
  } catch (...) {
    return FALSE;  // out of memory: the rest is not listed
  }
}

}  // namespace

bool isLikeTodaysBrowsers(HWND window) {
  const std::wstring name = classOf(window);
  return name == kFirefoxClass || name == kChromiumClass;
}

std::vector<BrowserWindow> visibleBrowserWindows() {
  std::vector<BrowserWindow> windows;
  ::EnumWindows(collect, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

}  // namespace quorrix
