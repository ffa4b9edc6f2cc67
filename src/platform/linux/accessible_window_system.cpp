#include "platform/linux/accessible_window_system.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/linux/address_text.h"
#include "platform/text_encoding.h"

namespace quorrix {
namespace {

constexpr std::string_view kNoNews = "Done";
constexpr std::string_view kVisit = "Connect: ";

// A handle is the number of the pass, the place of the window in it, counted from
// 1 so that no handle is 0, and the part of the window.
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

// A title's ending names the browser and its beginning the page, so a title that
// is too long loses its middle.
std::string shortened(const std::string& title, std::size_t size) {
  if (size == 0 || title.size() < size) return title;
  const std::size_t tail = (size - 1) / 2;
  return title.substr(0, size - 1 - tail) + title.substr(title.size() - tail);
}

}  // namespace

// Counts the time and the calls of one request towards the pass, and knows how much
// of the pass is left. What the scan does between requests does not count.
class AccessibleWindowSystem::Stint {
 public:
  explicit Stint(AccessibleWindowSystem& system)
      : system_(system),
        begin_(std::chrono::steady_clock::now()),
        callsBefore_(system.bus_.callsSent()),
        deadline_(kPassLimit - system.statistics_.duration) {}
  ~Stint() {
    system_.statistics_.duration += std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - begin_);
    system_.statistics_.calls += system_.bus_.callsSent() - callsBefore_;
  }
  Stint(const Stint&) = delete;
  Stint& operator=(const Stint&) = delete;

  [[nodiscard]] const Deadline& deadline() const { return deadline_; }

 private:
  AccessibleWindowSystem& system_;
  std::chrono::steady_clock::time_point begin_;
  std::uint64_t callsBefore_;
  Deadline deadline_;
};

AccessibleWindowSystem::AccessibleWindowSystem(Clock& clock, WindowList::Desktop desktop)
    : bus_(clock),
      list_(bus_, std::move(desktop),
            [this](const AccessibleId& frame) {
              reader_.forgetFrame(frame);
              presentation_.forgetFrame(frame.peer + frame.path);
            }),
      reader_(bus_) {}

// What the browser shows now is a visit again, whenever it can first be read.
void AccessibleWindowSystem::prepareForTracking() {
  presentation_ = BrowserPresentation();
  list_.forgetOrder();
  bus_.switchAccessibilityOn();
}

void AccessibleWindowSystem::EnumWindows(const std::function<bool(WindowHandle)>& callback) {
  beginPass();
  for (std::size_t i = 0; i < windows_.size(); ++i) {
    if (!callback(handleOf(i, Part::Frame))) return;
  }
}

void AccessibleWindowSystem::beginPass() {
  ++pass_;
  windows_.clear();
  statistics_ = {};
  const Stint stint(*this);
  const bool isReady = bus_.beginPass(stint.deadline());
  if (bus_.connectionNumber() != connectionNumber_) {
    connectionNumber_ = bus_.connectionNumber();
    list_.clear();
    reader_.clear();
    presentation_.forgetIdentities();
  }
  if (!isReady) return;
  list_.refresh(stint.deadline());
  for (AccessibleId& frame : list_.frames()) {
    if (windows_.size() == kMostWindows) break;
    windows_.push_back({.frame = std::move(frame), .isRead = false, .address = {}, .status = {}});
  }
}

std::size_t AccessibleWindowSystem::GetWindowTextA(WindowHandle handle, std::span<char> buffer) {
  const Target target = targetOf(handle);
  if (!target.window) return copyText({}, buffer);
  const std::string text = textOf(target);
  return copyText(target.part == Part::Frame ? shortened(text, buffer.size()) : text, buffer);
}

std::size_t AccessibleWindowSystem::GetClassNameA(WindowHandle handle, std::span<char> buffer) {
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

WindowHandle AccessibleWindowSystem::GetParent(WindowHandle handle) {
  const Target target = targetOf(handle);
  if (!target.window || target.part == Part::Frame) return kNoWindow;
  return handleOf(target.index, target.part == Part::Edit ? Part::ComboBox : Part::Frame);
}

WindowHandle AccessibleWindowSystem::GetWindow(WindowHandle handle, WindowRelation relation) {
  const Target target = targetOf(handle);
  if (!target.window) return kNoWindow;
  if (relation == WindowRelation::NextSibling) {
    if (target.part == Part::ComboBox) return handleOf(target.index, Part::StatusBar);
    const bool hasNext = target.part == Part::Frame && target.index + 1 < windows_.size();
    return hasNext ? handleOf(target.index + 1, Part::Frame) : kNoWindow;
  }
  if (target.part == Part::ComboBox) return handleOf(target.index, Part::Edit);
  if (target.part != Part::Frame) return kNoWindow;
  readPage(*target.window);
  return handleOf(target.index, Part::ComboBox);
}

std::size_t AccessibleWindowSystem::SendMessageA(WindowHandle handle, WindowMessage message,
                                                 std::span<char> buffer) {
  if (message == WindowMessage::GetText) return GetWindowTextA(handle, buffer);
  const Target target = targetOf(handle);
  return target.window ? textOf(target).size() : 0;
}

void AccessibleWindowSystem::readPage(Window& window) {
  if (window.isRead) return;
  window.isRead = true;
  const Stint stint(*this);
  list_.noteIsRead(window.frame);
  const Presented presented = presentation_.present(window.frame.peer + window.frame.path,
                                                    reader_.read(window.frame, stint.deadline()));
  window.address = windows1252FromUtf8(presented.address);
  window.status = kNoNews;
  if (presented.isVisit) {
    window.status = std::string(kVisit) + windows1252FromUtf8(hostOf(presented.address));
  }
}

WindowHandle AccessibleWindowSystem::handleOf(std::size_t index, Part part) const {
  return (((pass_ << kPlaceBits) | (index + 1)) << kPartBits) | static_cast<WindowHandle>(part);
}

AccessibleWindowSystem::Target AccessibleWindowSystem::targetOf(WindowHandle handle) {
  const auto part = static_cast<Part>(handle & ((1U << kPartBits) - 1));
  const std::size_t place = (handle >> kPartBits) & kMostWindows;
  if (place == 0 || place > windows_.size() || handleOf(place - 1, part) != handle) return {};
  return {&windows_[place - 1], place - 1, part};
}

std::string AccessibleWindowSystem::textOf(const Target& target) {
  if (target.part == Part::StatusBar) return target.window->status;
  if (target.part != Part::Frame) return target.window->address;
  const Stint stint(*this);
  return windows1252FromUtf8(list_.titleOf(target.window->frame, stint.deadline()));
}

}  // namespace quorrix
