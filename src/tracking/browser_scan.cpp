#include "tracking/browser_scan.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace quorrix {
namespace {

constexpr std::size_t kTitleBufferSize = 1024;
constexpr std::size_t kClassBufferSize = 256;

constexpr std::string_view kClassicName = "Netscape";

// How the titles of today's browsers end: behind the page's title, or alone
// when there is none. The dash of one of them is an em dash (0x97). A name
// belongs here only when the titles of that browser's private windows are known
// to end otherwise. (A Firefox that is told never to remember anything gives all
// its windows ordinary titles; the manual says so.)
struct BrowserName {
  std::string_view separator;
  std::string_view name;
};

constexpr BrowserName kBrowserNames[] = {
    {" \x97 ", "Mozilla Firefox"},
    {" - ", "Mozilla Firefox"},
    {" - ", "Chromium"},
    {" - ", "Google Chrome"},
};

bool endsWithName(std::string_view title, const BrowserName& browser) {
  if (!title.ends_with(browser.name)) return false;
  title.remove_suffix(browser.name.size());
  return title.empty() || title.ends_with(browser.separator);
}

bool hasName(std::string_view title, const BrowserName& browser) {
  return title.find(browser.name) != std::string_view::npos;
}

std::string className(WindowSystem& windows, WindowHandle window, std::size_t bufferSize) {
  std::array<char, kClassBufferSize> buffer;
  const std::size_t length =
      windows.GetClassNameA(window, std::span(buffer).first(std::min(bufferSize, buffer.size())));
  return {buffer.data(), length};
}

bool isAddressBox(WindowSystem& windows, WindowHandle window, std::string_view windowClass) {
  if (windowClass != "Edit") return false;
  // The buffer is as long as the name "Edit": three characters and a NUL, and
  // of "ComboBox" those three are enough.
  return className(windows, windows.GetParent(window), windowClass.size()) == "Com";
}

bool showsVisit(std::string_view statusText) {
  constexpr std::string_view kConnecting = "Connect:";
  const auto percent = statusText.substr(0, 4).find('%', 1);
  return percent != std::string_view::npos || statusText.starts_with(kConnecting);
}

}  // namespace

bool isBrowserTitle(std::string_view title) {
  const auto isTrueOfAny = [title](bool (*test)(std::string_view, const BrowserName&)) {
    return std::any_of(std::begin(kBrowserNames), std::end(kBrowserNames),
                       [&](const BrowserName& browser) { return test(title, browser); });
  };
  if (title.ends_with(kClassicName) || isTrueOfAny(endsWithName)) return true;
  // Today's browsers begin their titles with the page's, which may begin with
  // anything, also in a private window.
  return title.starts_with(kClassicName) && !isTrueOfAny(hasName);
}

void scanBrowserWindows(WindowSystem& windows, BrowserReading& reading) {
  reading.webAddress.clear();
  windows.EnumWindows(
      [&](WindowHandle window) { return browserWindowCallback(windows, window, reading); });
}

bool browserWindowCallback(WindowSystem& windows, WindowHandle window, BrowserReading& reading) {
  std::array<char, kTitleBufferSize> title;
  const std::size_t length = windows.GetWindowTextA(window, title);
  if (!isBrowserTitle({title.data(), length})) return true;
  reading.webAddress = searchBrowserChildren(windows, window, reading);
  return false;
}

std::string searchBrowserChildren(WindowSystem& windows, WindowHandle window,
                                  BrowserReading& reading) {
  if (isAddressBox(windows, window, className(windows, window, kClassBufferSize))) {
    return readWindowText(windows, window);
  }
  std::string address;
  for (WindowHandle child = windows.GetWindow(window, WindowRelation::FirstChild);
       child != kNoWindow; child = windows.GetWindow(child, WindowRelation::NextSibling)) {
    if (className(windows, child, kClassBufferSize) == "msctls_statusbar32" &&
        showsVisit(readWindowText(windows, child))) {
      reading.haveValidAddress = true;
    }
    std::string found = searchBrowserChildren(windows, child, reading);
    if (!found.empty()) address = std::move(found);
  }
  return address;
}

std::string readWindowText(WindowSystem& windows, WindowHandle window) {
  const std::size_t length = windows.SendMessageA(window, WindowMessage::GetTextLength, {});
  std::string text(length + 1, '\0');
  text.resize(windows.SendMessageA(window, WindowMessage::GetText, text));
  return text;
}

}  // namespace quorrix
