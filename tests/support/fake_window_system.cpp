#include "support/fake_window_system.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/failure.h"

namespace quorrix::test {
namespace {

// Copies at most buffer.size() - 1 characters and a NUL. The rest of the buffer stays
// unchanged.
std::size_t copyText(std::string_view text, std::span<char> buffer) {
  if (buffer.empty()) return 0;
  const std::size_t length = text.copy(buffer.data(), buffer.size() - 1);
  buffer[length] = '\0';
  return length;
}

}  // namespace

FakeWindow browserWindow(std::string title, std::string address, std::string statusText) {
  return {.windowClass = "BrowserFrame",
          .title = std::move(title),
          .children = {{.windowClass = "ComboBox",
                        .children = {{.windowClass = "Edit", .text = std::move(address)}}},
                       {.windowClass = "msctls_statusbar32", .text = std::move(statusText)}}};
}

void FakeWindowSystem::show(std::vector<FakeWindow> windows) {
  firstHandle_ += entries_.size();
  entries_.clear();
  add(windows, kNoWindow);
}

void FakeWindowSystem::atEachEnumeration(std::function<void(int)> action) {
  eachEnumeration_ = std::move(action);
}

void FakeWindowSystem::beforeEachCall(std::function<void(const Call&)> action) {
  eachCall_ = std::move(action);
}

void FakeWindowSystem::failAt(WindowCall kind, int n, int number) {
  faults_.push_back({.kind = kind, .callsLeft = n, .number = number});
}

WindowHandle FakeWindowSystem::windowOfClass(const std::string& windowClass) const {
  const auto place = std::find_if(
      entries_.begin(), entries_.end(),
      [&windowClass](const Entry& entry) { return entry.window.windowClass == windowClass; });
  if (place == entries_.end()) return kNoWindow;
  return firstHandle_ + static_cast<WindowHandle>(place - entries_.begin());
}

void FakeWindowSystem::EnumWindows(const std::function<bool(WindowHandle)>& callback) {
  ++enumerations_;
  if (eachEnumeration_) eachEnumeration_(enumerations_);
  note(WindowCall::EnumWindows, kNoWindow, 0);
  std::vector<WindowHandle> topLevel;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (entries_[i].parent == kNoWindow) topLevel.push_back(firstHandle_ + i);
  }
  for (const WindowHandle window : topLevel) {
    if (!callback(window)) return;
  }
}

std::size_t FakeWindowSystem::GetWindowTextA(WindowHandle window, std::span<char> buffer) {
  note(WindowCall::GetWindowTextA, window, buffer.size());
  const Entry* const entry = entryOf(window);
  return copyText(entry == nullptr ? "" : entry->window.title, buffer);
}

std::size_t FakeWindowSystem::GetClassNameA(WindowHandle window, std::span<char> buffer) {
  note(WindowCall::GetClassNameA, window, buffer.size());
  const Entry* const entry = entryOf(window);
  return copyText(entry == nullptr ? "" : entry->window.windowClass, buffer);
}

WindowHandle FakeWindowSystem::GetParent(WindowHandle window) {
  note(WindowCall::GetParent, window, 0);
  const Entry* const entry = entryOf(window);
  return entry == nullptr ? kNoWindow : entry->parent;
}

WindowHandle FakeWindowSystem::GetWindow(WindowHandle window, WindowRelation relation) {
  note(WindowCall::GetWindow, window, 0);
  const Entry* const entry = entryOf(window);
  if (entry == nullptr) return kNoWindow;
  return relation == WindowRelation::FirstChild ? entry->firstChild : entry->nextSibling;
}

std::size_t FakeWindowSystem::SendMessageA(WindowHandle window, WindowMessage message,
                                           std::span<char> buffer) {
  note(WindowCall::SendMessageA, window, buffer.size());
  const Entry* const entry = entryOf(window);
  if (entry == nullptr) return 0;
  if (message == WindowMessage::GetText) return copyText(entry->window.text, buffer);
  return entry->window.announcedLength.value_or(entry->window.text.size());
}

// Adds the windows of one row of the table; returns the first one's handle.
WindowHandle FakeWindowSystem::add(const std::vector<FakeWindow>& siblings, WindowHandle parent) {
  WindowHandle first = kNoWindow;
  WindowHandle previous = kNoWindow;
  for (const FakeWindow& window : siblings) {
    const WindowHandle handle = firstHandle_ + entries_.size();
    entries_.push_back({.window = window, .parent = parent});
    if (first == kNoWindow) first = handle;
    if (previous != kNoWindow) entries_[previous - firstHandle_].nextSibling = handle;
    previous = handle;
    const WindowHandle firstChild = add(window.children, handle);
    entries_[handle - firstHandle_].firstChild = firstChild;
  }
  return first;
}

const FakeWindowSystem::Entry* FakeWindowSystem::entryOf(WindowHandle window) const {
  const bool isThere = window >= firstHandle_ && window - firstHandle_ < entries_.size();
  return isThere ? &entries_[window - firstHandle_] : nullptr;
}

void FakeWindowSystem::note(WindowCall kind, WindowHandle window, std::size_t bufferSize) {
  const Entry* const entry = entryOf(window);
  const Call call{.kind = kind,
                  .windowClass = entry == nullptr ? "" : entry->window.windowClass,
                  .bufferSize = bufferSize};
  calls_.push_back(call);
  std::optional<int> strikes;
  for (Fault& fault : faults_) {
    if (fault.kind == kind && --fault.callsLeft == 0) strikes = fault.number;
  }
  if (strikes) throw Failure(*strikes);
  if (eachCall_) eachCall_(call);
}

}  // namespace quorrix::test
