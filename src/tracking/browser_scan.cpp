#include "tracking/browser_scan.h"

#include <algorithm>
#include <array>

namespace quorrix {
namespace {

constexpr std::size_t kTitleBufferSize = 1024;
constexpr std::size_t kClassBufferSize = 256;

constexpr std::string_view kBrowserName = "Netscape";

std::string className(WindowSystem& windows, WindowHandle window, std::size_t bufferSize) {
  std::array<char, kClassBufferSize> buffer;
  const std::size_t length =
      windows.GetClassNameA(window, std::span(buffer).first(std::min(bufferSize, buffer.size())));
  return {buffer.data(), length};
}

bool isAddressBox(WindowSystem& windows, WindowHandle window, std::string_view windowClass) {
  if (windowClass != "Edit") return false;
  // The buffer is as long as the name "Edit", so it holds three characters and a NUL.
  // Three characters are enough to recognize "ComboBox".
  return className(windows, windows.GetParent(window), windowClass.size()) == "Com";
}

bool showsVisit(std::string_view statusText) {
  constexpr std::string_view kConnecting = "Connect:";
  const auto percent = statusText.substr(0, 4).find('%', 1);
  return percent != std::string_view::npos || statusText.starts_with(kConnecting);
}

}  // namespace

bool isBrowserTitle(std::string_view title) {
  return title.starts_with(kBrowserName) || title.ends_with(kBrowserName);
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
