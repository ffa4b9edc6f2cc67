#include "platform/linux/accessible_window_system.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/browsers/address_text.h"

namespace quorrix {
namespace {

constexpr std::string_view kNoNews = "Done";
constexpr std::string_view kVisit = "Connect: ";
constexpr std::chrono::milliseconds kShortestWait{20};
constexpr std::chrono::milliseconds kLongestHurry{2000};
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

AccessibleWindowSystem::AccessibleWindowSystem(Clock& clock, const CodePage& codePage,
                                               Desktop desktop)
    : clock_(clock),
      codePage_(codePage),
      bus_(clock),
      list_(bus_, clock, std::move(desktop.stack),
            [this](const AccessibleId& frame) {
              readers_.erase(frame);
              presentation_.forgetFrame(frame.peer + frame.path);
            }),
      unreadable_(clock, std::move(desktop.browserProcesses)) {}

// What the browser shows now counts as a visit again, once it can be read. Unfinished
// readings are discarded: a page that was being read when tracking stopped may have been
// left since.
void AccessibleWindowSystem::prepareForTracking() {
  presentation_ = BrowserPresentation();
  readers_.clear();
  list_.forgetOrder();
  unreadable_.forget();
  bus_.switchAccessibilityOn();
}

void AccessibleWindowSystem::EnumWindows(const std::function<bool(WindowHandle)>& callback) {
  beginPass();
  for (std::size_t i = 0; i < windows_.size(); ++i) {
    if (!callback(handleOf(i, Part::Frame))) return;
  }
}

void AccessibleWindowSystem::beginPass() {
  const auto begin = std::chrono::steady_clock::now();
  const std::uint64_t callsBefore = bus_.callsSent();
  ++pass_;
  windows_.clear();
  reading_.reset();
  const Deadline deadline(kPassLimit);
  const bool isReady = bus_.beginPass(deadline);
  if (bus_.connectionNumber() != connectionNumber_) {
    connectionNumber_ = bus_.connectionNumber();
    list_.clear();
    readers_.clear();
    presentation_.forgetIdentities();
  }
  if (isReady) ask(deadline);
  if (!isReady || isThrough_) lastThrough_ = clock_.elapsed();
  unreadable_.look(list_, isReady);
  statistics_ = {.calls = bus_.callsSent() - callsBefore,
                 .duration = std::chrono::duration_cast<std::chrono::microseconds>(
                     std::chrono::steady_clock::now() - begin)};
}

// A program that never answers must not keep the waits short for ever.
std::chrono::milliseconds AccessibleWindowSystem::timeToNextPass() const {
  const auto fair = std::chrono::ceil<std::chrono::milliseconds>(statistics_.duration) * 4;
  const bool isAnswerNear = clock_.elapsed() - lastThrough_ < kLongestHurry;
  const bool isHurrying = !isThrough_ && isAnswerNear;
  return std::max(fair, isHurrying ? kShortestWait : kUsualWait);
}

void AccessibleWindowSystem::ask(const Deadline& deadline) {
  list_.beginPass();
  isThrough_ = advance();
  while (!isThrough_ && bus_.awaitAnswer(deadline)) isThrough_ = advance();
  showWindows();
}

// True once this pass knows everything that it asks for.
bool AccessibleWindowSystem::advance() {
  const bool isListThrough = list_.advance();
  const auto ordinary = list_.ordinary();
  if (ordinary.empty()) {
    reading_.reset();
    return isListThrough;
  }
  if (ordinary.front()->id != front_) {
    front_ = ordinary.front()->id;
    reading_.reset();
    readers_.erase(front_);  // its unfinished reading is out of date
  }
  if (!reading_) readFront();
  return isListThrough && reading_;
}

void AccessibleWindowSystem::readFront() {
  std::unique_ptr<PageReader>& reader = readers_[front_];
  if (!reader) {
    const auto window = std::ranges::find(list_.all(), front_, &BrowserWindows::Window::id);
    reader = makePageReader(window->browser, bus_, front_);
    isReading_ = false;
  }
  if (!std::exchange(isReading_, true)) readingSince_ = clock_.elapsed();
  reading_ = reader->read();
  if (!reading_) return;
  isReading_ = false;
  if (clock_.elapsed() - readingSince_ > kLongestReading) reading_.reset();
}

// The name was read together with the page. If it could not be read, or is no longer that
// of an ordinary window, the page is not shown.
void AccessibleWindowSystem::showWindows() {
  const bool isFrontOrdinary =
      !reading_ || (!reading_->name.empty() && list_.takeName(front_, reading_->name));
  for (const BrowserWindows::Window* window : list_.ordinary()) {
    if (windows_.size() == kMostWindows) break;
    windows_.push_back({.title = codePage_.fromUtf8(window->name + std::string(kTitleEnd)),
                        .address = {},
                        .status = std::string(kNoNews)});
  }
  if (windows_.empty() || !isFrontOrdinary) return;
  const std::optional<PageReading> page = reading_ ? reading_->page : std::nullopt;
  const Presented presented =
      presentation_.present(front_.peer + front_.path, page, clock_.elapsed());
  windows_.front().address = codePage_.fromUtf8(presented.address);
  if (!presented.isVisit) return;
  windows_.front().status = std::string(kVisit) + codePage_.fromUtf8(hostOf(presented.address));
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
  return handleOf(target.index, Part::ComboBox);
}

std::size_t AccessibleWindowSystem::SendMessageA(WindowHandle handle, WindowMessage message,
                                                 std::span<char> buffer) {
  if (message == WindowMessage::GetText) return GetWindowTextA(handle, buffer);
  const Target target = targetOf(handle);
  return target.window ? textOf(target).size() : 0;
}

WindowHandle AccessibleWindowSystem::handleOf(std::size_t index, Part part) const {
  return (((pass_ << kPlaceBits) | (index + 1)) << kPartBits) | static_cast<WindowHandle>(part);
}

AccessibleWindowSystem::Target AccessibleWindowSystem::targetOf(WindowHandle handle) const {
  const auto part = static_cast<Part>(handle & ((1U << kPartBits) - 1));
  const std::size_t place = (handle >> kPartBits) & kMostWindows;
  if (place == 0 || place > windows_.size() || handleOf(place - 1, part) != handle) return {};
  return {&windows_[place - 1], place - 1, part};
}

const std::string& AccessibleWindowSystem::textOf(const Target& target) {
  if (target.part == Part::StatusBar) return target.window->status;
  return target.part == Part::Frame ? target.window->title : target.window->address;
}

}  // namespace quorrix
