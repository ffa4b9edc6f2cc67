#include "platform/linux/accessible_window_system.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace quorrix {
namespace {

constexpr std::chrono::milliseconds kShortestWait{20};
constexpr std::chrono::milliseconds kLongestHurry{2000};

}  // namespace

AccessibleWindowSystem::AccessibleWindowSystem(Clock& clock, const CodePage& codePage,
                                               Desktop desktop)
    : clock_(clock),

      bus_(clock),
      list_(bus_, clock, std::move(desktop.stack),
            [this](const AccessibleId& frame) {
              readers_.erase(frame);
              presentation_.forgetFrame(frame.peer + frame.path);
            }),
      unreadable_(clock, std::move(desktop.browserProcesses)),
      windows_(codePage) {}

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
  for (std::size_t i = 0; i < windows_.count(); ++i) {
    if (!callback(windows_.frame(i))) return;
  }
}

void AccessibleWindowSystem::beginPass() {
  const auto begin = std::chrono::steady_clock::now();
  const std::uint64_t callsBefore = bus_.callsSent();
  windows_.beginPass();
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
  for (const BrowserWindows::Window* window : list_.ordinary()) windows_.add(window->name);
  if (windows_.count() == 0 || !isFrontOrdinary) return;
  const std::optional<PageReading> page = reading_ ? reading_->page : std::nullopt;
  windows_.showInFront(presentation_.present(front_.peer + front_.path, page, clock_.elapsed()));
}

std::size_t AccessibleWindowSystem::GetWindowTextA(WindowHandle window, std::span<char> buffer) {
  return windows_.GetWindowTextA(window, buffer);
}

std::size_t AccessibleWindowSystem::GetClassNameA(WindowHandle window, std::span<char> buffer) {
  return windows_.GetClassNameA(window, buffer);
}

WindowHandle AccessibleWindowSystem::GetParent(WindowHandle window) {
  return windows_.GetParent(window);
}

WindowHandle AccessibleWindowSystem::GetWindow(WindowHandle window, WindowRelation relation) {
  return windows_.GetWindow(window, relation);
}

std::size_t AccessibleWindowSystem::SendMessageA(WindowHandle window, WindowMessage message,
                                                 std::span<char> buffer) {
  return windows_.SendMessageA(window, message, buffer);
}

}  // namespace quorrix
