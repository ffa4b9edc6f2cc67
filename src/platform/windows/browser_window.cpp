#include "platform/windows/browser_window.h"

#include <dwmapi.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/browsers/browser_titles.h"
#include "platform/windows/process_program.h"
#include "platform/windows/wide_text.h"

namespace quorrix {
namespace {

constexpr std::wstring_view kFirefoxClass = L"MozillaWindowClass";
constexpr std::wstring_view kChromiumClass = L"Chrome_WidgetWin_1";
constexpr std::wstring_view kFirefoxProgram = L"firefox.exe";
constexpr std::wstring_view kChromiumProgram = L"chrome.exe";

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

// The text of a private window of Chromium is that of an ordinary one.
std::optional<BrowserKind> browserOf(HWND window) {
  const std::string text = textOf(window);
  if (classOf(window) == kFirefoxClass) {
    const bool isNamed = titleKind(BrowserKind::Firefox, text) != TitleKind::NotOrdinary;
    return isNamed ? std::optional(BrowserKind::Firefox) : std::nullopt;
  }
  for (const BrowserKind kind : {BrowserKind::GoogleChrome, BrowserKind::Chromium}) {
    if (titleKind(kind, text) != TitleKind::NotOrdinary) return kind;
  }
  return std::nullopt;
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
  return name == kFirefoxClass || name == kChromiumClass;
}

std::vector<BrowserWindow> BrowserWindowList::visible() {
  look();
  std::vector<BrowserWindow> found;
  for (const HWND window : windows_) {
    const DWORD process = processOf(window);
    const bool isFirefox = classOf(window) == kFirefoxClass;
    if (!areSame(programs_[process], isFirefox ? kFirefoxProgram : kChromiumProgram)) continue;
    if (!isVisible(window) || ::GetWindow(window, GW_OWNER) != nullptr) continue;
    found.push_back({window, process, browserOf(window)});
  }
  return found;
}

std::size_t BrowserWindowList::firefoxProcesses() {
  look();
  return static_cast<std::size_t>(std::ranges::count_if(
      programs_, [](const auto& entry) { return areSame(entry.second, kFirefoxProgram); }));
}

void BrowserWindowList::look() {
  windows_.clear();
  ::EnumWindows(collect, reinterpret_cast<LPARAM>(&windows_));
  const auto known = std::exchange(programs_, {});
  for (const HWND window : windows_) {
    const DWORD process = processOf(window);
    if (programs_.contains(process)) continue;
    const auto its = known.find(process);
    programs_[process] = its != known.end() ? its->second : programOf(process).filename().wstring();
  }
}

}  // namespace quorrix
