#include "platform/windows/browser_window.h"

#include <dwmapi.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/browsers/browser_titles.h"
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

// As the system keeps it; the window is not asked.
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

std::wstring programOf(DWORD process) {
  const HANDLE handle = ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process);
  if (handle == nullptr) return {};
  std::wstring path(32 * 1024, L'\0');
  auto length = static_cast<DWORD>(path.size());
  const bool isKnown = ::QueryFullProcessImageNameW(handle, 0, path.data(), &length) != 0;
  ::CloseHandle(handle);
  path.resize(isKnown ? length : 0);
  std::wstring name = std::filesystem::path(path).filename().wstring();
  std::ranges::transform(name, name.begin(), [](wchar_t letter) {
    return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter + (L'a' - L'A')) : letter;
  });
  return name;
}

// The window text of a private window of Chromium is that of an ordinary one.
std::optional<BrowserKind> browserOf(HWND window, DWORD process) {
  const std::wstring program = programOf(process);
  const std::string text = textOf(window);
  const bool isOfFirefox = classOf(window) == kFirefoxClass;
  for (const Browser& browser : kBrowsers) {
    const bool isOfTheClass = (browser.kind == BrowserKind::Firefox) == isOfFirefox;
    if (!isOfTheClass || program != browser.program) continue;
    if (titleKind(browser.kind, text) != TitleKind::NotOrdinary) return browser.kind;
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
