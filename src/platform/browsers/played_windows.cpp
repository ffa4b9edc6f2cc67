#include "platform/browsers/played_windows.h"

#include <algorithm>

#include "platform/browsers/address_text.h"

namespace quorrix {
namespace {

constexpr std::string_view kNoNews = "Done";
constexpr std::string_view kVisit = "Connect: ";
constexpr std::string_view kTitleEnd = " - Netscape";

// A handle consists of the number of the pass, the position of the window in that pass
// (counted from 1, so that no handle is 0) and the part of the window.
constexpr unsigned kPartBits = 2;
constexpr unsigned kPlaceBits = 16;
constexpr std::size_t kMostWindows = (std::size_t{1} << kPlaceBits) - 1;

std::size_t copyText(std::string_view text, std::span<char> buffer) {
  if (buffer.empty()) return 0;
  const std::size_t length = std::min(text.size(), buffer.size() - 1);
  std::copy_n(text.begin(), length, buffer.begin());
  buffer[length] = '\0';
  return length;
}

// The scan recognises a browser by the end of its title, so a title that is too long
// loses its middle.
std::string shortened(const std::string& title, std::size_t size) {
  if (size == 0 || title.size() < size) return title;
  const std::size_t tail = (size - 1) / 2;
  return title.substr(0, size - 1 - tail) + title.substr(title.size() - tail);
}

}  // namespace

void PlayedWindows::beginPass() {
  ++pass_;
  windows_.clear();
}

void PlayedWindows::add(std::string_view name) {
  if (windows_.size() == kMostWindows) return;
  windows_.push_back({.title = codePage_.fromUtf8(std::string(name).append(kTitleEnd)),
                      .address = {},
                      .status = std::string(kNoNews)});
}

void PlayedWindows::showInFront(const Presented& page) {
  Window& front = windows_.front();
  front.address = codePage_.fromUtf8(page.address);
  if (page.isVisit) front.status = std::string(kVisit) + codePage_.fromUtf8(hostOf(page.address));
}

std::size_t PlayedWindows::GetWindowTextA(WindowHandle handle, std::span<char> buffer) const {
  const Target target = targetOf(handle);
  if (!target.window) return copyText({}, buffer);
  const std::string text = textOf(target);
  return copyText(target.part == Part::Frame ? shortened(text, buffer.size()) : text, buffer);
}

std::size_t PlayedWindows::GetClassNameA(WindowHandle handle, std::span<char> buffer) const {
  const Target target = targetOf(handle);
  if (!target.window) return copyText({}, buffer);
  switch (target.part) {
    case Part::ComboBox:
      return copyText("ComboBox", buffer);
    case Part::Edit:
      return copyText("Edit", buffer);
    case Part::StatusBar:
      return copyText("msctls_statusbar32", buffer);
    case Part::Frame:
      break;
  }
  return copyText("BrowserFrame", buffer);
}

WindowHandle PlayedWindows::GetParent(WindowHandle handle) const {
  const Target target = targetOf(handle);
  if (!target.window || target.part == Part::Frame) return kNoWindow;
  return handleOf(target.index, target.part == Part::Edit ? Part::ComboBox : Part::Frame);
}

WindowHandle PlayedWindows::GetWindow(WindowHandle handle, WindowRelation relation) const {
  const Target target = targetOf(handle);
  if (!target.window) return kNoWindow;
  if (relation == WindowRelation::NextSibling) {
    if (target.part == Part::ComboBox) return handleOf(target.index, Part::StatusBar);
    const bool hasNext = target.part == Part::Frame && target.index + 1 < windows_.size();
    return hasNext ? handleOf(target.index + 1, Part::Frame) : kNoWindow;
  }
  if (target.part == Part::ComboBox) return handleOf(target.index, Part::Edit);
  if (target.part != Part::Frame) return kNoWindow;
  return handleOf(target.index, Part::ComboBox);
}

std::size_t PlayedWindows::SendMessageA(WindowHandle handle, WindowMessage message,
                                        std::span<char> buffer) const {
  if (message == WindowMessage::GetText) return GetWindowTextA(handle, buffer);
  const Target target = targetOf(handle);
  return target.window ? textOf(target).size() : 0;
}

WindowHandle PlayedWindows::handleOf(std::size_t index, Part part) const {
  return kPlayed | (((pass_ << kPlaceBits) | (index + 1)) << kPartBits) |
         static_cast<WindowHandle>(part);
}

PlayedWindows::Target PlayedWindows::targetOf(WindowHandle handle) const {
  const auto part = static_cast<Part>(handle & ((1U << kPartBits) - 1));
  const std::size_t place = (handle >> kPartBits) & kMostWindows;
  if (place == 0 || place > windows_.size() || handleOf(place - 1, part) != handle) return {};
  return {&windows_[place - 1], place - 1, part};
}

const std::string& PlayedWindows::textOf(const Target& target) {
  if (target.part == Part::StatusBar) return target.window->status;
  return target.part == Part::Frame ? target.window->title : target.window->address;
}

}  // namespace quorrix
