#include "platform/windows/browser_window.h"

#include <dwmapi.h>

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "platform/browsers/browser_titles.h"
#include "platform/windows/process_program.h"
#include "platform/windows/wide_text.h"

namespace quorrix {
namespace {

// The programs whose windows have the class, and their browsers.
struct Family {
  std::wstring_view windowClass;
  std::wstring_view program;
  std::span<const BrowserKind> browsers;
};

constexpr BrowserKind kMozilla[] = {BrowserKind::Firefox};
constexpr BrowserKind kChrome[] = {BrowserKind::GoogleChrome, BrowserKind::Chromium};
constexpr Family kFirefox{L"MozillaWindowClass", L"firefox.exe", kMozilla};
constexpr Family kChromium{L"Chrome_WidgetWin_1", L"chrome.exe", kChrome};

std::wstring classOf(HWND window) {
  std::array<wchar_t, 64> name{};
  const int length = ::GetClassNameW(window, name.data(), static_cast<int>(name.size()));
  return {name.data(), static_cast<std::size_t>(length)};
}

// As the system keeps it. A window of another program is not asked.
std::string textOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = ::GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return utf8FromWide(text);
}

bool isVisible(HWND window) {
  DWORD cloaked = 0;
  const HRESULT result = ::DwmGetWindowAttribute(window, DWMWA_CLOAKED, &cloaked, sizeof cloaked);
  return ::IsWindowVisible(window) && !::IsIconic(window) && !(SUCCEEDED(result) && cloaked != 0);
}

bool areSame(std::wstring_view one, std::wstring_view other) {
  return ::CompareStringOrdinal(one.data(), static_cast<int>(one.size()), other.data(),
                                static_cast<int>(other.size()), TRUE) == CSTR_EQUAL;
}

DWORD processOf(HWND window) {
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  return process;
}

// By the text, which for a private window of Chromium is that of an ordinary one.
std::optional<BrowserKind> browserOf(HWND window, std::span<const BrowserKind> candidates) {
  const std::string text = textOf(window);
  const auto named = std::ranges::find_if(candidates, [&text](BrowserKind kind) {
    return titleKind(kind, text) != TitleKind::NotOrdinary;
  });
  return named == candidates.end() ? std::nullopt : std::optional(*named);
}

BOOL CALLBACK collect(HWND window, LPARAM list) noexcept {
  if (!isLikeTodaysBrowsers(window)) return TRUE;
  try {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
  } catch (...) {
    return FALSE;  // out of memory: the rest is not listed
  }
}

}  // namespace

bool isLikeTodaysBrowsers(HWND window) {
  const std::wstring name = classOf(window);
  return name == kFirefox.windowClass || name == kChromium.windowClass;
}

std::vector<BrowserWindow> BrowserWindowList::visible() {
  std::vector<HWND> windows;
  ::EnumWindows(collect, reinterpret_cast<LPARAM>(&windows));
  const auto known = std::exchange(programs_, {});
  std::vector<BrowserWindow> found;
  for (const HWND window : windows) {
    const DWORD process = processOf(window);
    if (!programs_.contains(process)) {
      const auto its = known.find(process);
      programs_[process] =
          its != known.end() ? its->second : programOf(process).filename().wstring();
    }
    const Family& family = classOf(window) == kFirefox.windowClass ? kFirefox : kChromium;
    if (!areSame(programs_[process], family.program)) continue;
    if (!isVisible(window) || ::GetWindow(window, GW_OWNER) != nullptr) continue;
    found.push_back({window, process, browserOf(window, family.browsers)});
  }
  return found;
}

std::size_t BrowserWindowList::firefoxProcesses() const {
  return static_cast<std::size_t>(std::ranges::count_if(
      programs_, [](const auto& entry) { return areSame(entry.second, kFirefox.program); }));
}

}  // namespace quorrix
