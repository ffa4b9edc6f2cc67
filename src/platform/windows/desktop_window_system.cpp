#include "platform/windows/desktop_window_system.h"

#include <objbase.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/browsers/browser_titles.h"

namespace quorrix {
namespace {

// A window whose kind is not known is asked again every so many passes once it is no
// longer new.
constexpr unsigned kThoroughEvery = 5;
constexpr std::chrono::milliseconds kNewFor{2000};
constexpr std::chrono::milliseconds kSettling{10'000};
constexpr std::chrono::milliseconds kShortestWait{20};
constexpr std::chrono::milliseconds kLongestHurry{2000};

// With kPassLimit, less than 200 ms for a pass beside a classic browser that hangs, too.
constexpr std::chrono::milliseconds kClassicAnswerLimit{140};
constexpr unsigned kHurriesAfterLate = 5;

// How long a window must be in front before its page is shown. When the desktop brings all
// windows back, one after the other is in front for a moment.
constexpr std::chrono::milliseconds kFrontStands{300};

std::string keyOf(DWORD process, HWND window) {
  return std::to_string(process) + ' ' + std::to_string(reinterpret_cast<std::uintptr_t>(window));
}

// The names of private windows end in brackets in every language. Which of Chromium's two
// names a window has is known from its text only, which a page can choose. So brackets count
// whichever it is.
bool isOrdinary(BrowserKind browser, const std::string& name) {
  const bool mayBePrivate = browser != BrowserKind::Firefox && endsInBrackets(name);
  return !mayBePrivate && isOrdinaryName(browser, name);
}

// The thread keeps the reader, whose objects of the browser must be released on the thread
// that used them.
std::unique_ptr<QuestionThread> threadOf(std::shared_ptr<MsaaPageReader> reader) {
  return std::make_unique<QuestionThread>([] { ::CoInitializeEx(nullptr, COINIT_MULTITHREADED); },
                                          [its = std::move(reader)]() mutable {
                                            its.reset();
                                            ::CoUninitialize();
                                          });
}

}  // namespace

DesktopWindowSystem::DesktopWindowSystem(Clock& clock, const CodePage& codePage)
    : clock_(clock), classic_(codePage, kClassicAnswerLimit), played_(codePage) {}

// What the browser shows now counts as a visit again. An answer about the time before is
// not used. A thread that waits for a browser that hangs is kept, so that each start does
// not leave another one waiting.
void DesktopWindowSystem::prepareForTracking() {
  presentation_ = BrowserPresentation();
  kinds_ = {};
  windows_.clear();
  std::erase_if(processes_, [](const auto& entry) {
    return !entry.second.thread || !entry.second.thread->isAsking();
  });
  for (auto& [id, process] : processes_) process.answers = nullptr;
}

void DesktopWindowSystem::EnumWindows(const std::function<bool(WindowHandle)>& callback) {
  beginPass();
  classic_.EnumWindows([&](WindowHandle handle) {
    const HWND window = reinterpret_cast<HWND>(handle);
    if (!isLikeTodaysBrowsers(window)) return callback(handle);
    const auto place = std::ranges::find(ordinary_, window);
    if (place == ordinary_.end()) return true;
    if (place == ordinary_.begin()) showPage();
    return callback(played_.frame(static_cast<std::size_t>(place - ordinary_.begin())));
  });
}

void DesktopWindowSystem::beginPass() {
  const auto begin = std::chrono::steady_clock::now();
  ++pass_;
  reading_.reset();
  listWindows();
  takeAnswers();
  ask();
  await();
  takeAnswers();
  play();
  if (!isAnswerMissing()) lastComplete_ = clock_.elapsed();
  duration_ = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - begin);
}

// A window that is minimised keeps what is known of it. An ordinary one whose text names no
// browser for a while keeps its place, and is not read.
void DesktopWindowSystem::listWindows() {
  std::vector<Window> known = std::exchange(windows_, {});
  for (const BrowserWindow& found : list_.visible()) {
    const auto same = std::ranges::find_if(known, [&](const Window& window) {
      return window.handle == found.handle && window.process == found.process;
    });
    const bool isKept = same != known.end() && same->kind == WindowKind::Ordinary;
    if (!found.browser && !isKept) continue;
    Window window;
    window.handle = found.handle;
    window.process = found.process;
    window.firstSeen = clock_.elapsed();
    if (same != known.end()) {
      window = std::move(*same);
      known.erase(same);
    }
    window.browser = found.browser.value_or(window.browser);
    window.isVisible = true;
    window.isNamed = found.browser.has_value();
    windows_.push_back(std::move(window));
  }
  for (Window& window : known) {
    window.isVisible = false;
    DWORD process = 0;
    ::GetWindowThreadProcessId(window.handle, &process);
    if (process == window.process) {
      windows_.push_back(std::move(window));
    } else {
      presentation_.forgetFrame(keyOf(window.process, window.handle));
    }
  }
  std::erase_if(processes_, [this](const auto& entry) {
    const bool isGone = std::ranges::none_of(
        windows_, [&](const Window& window) { return window.process == entry.first; });
    if (isGone) kinds_.forget(std::to_string(entry.first));
    return isGone;
  });
}

// The name of a window is known before its page is asked for.
void DesktopWindowSystem::ask() {
  std::map<DWORD, std::vector<WindowQuestion>> questions;
  const Window* const first = front();
  for (const Window& window : windows_) {
    if (!window.isVisible || !window.isNamed) continue;
    if (&window != first && !isDue(window)) continue;
    const bool wantsHistory =
        window.kind == WindowKind::Unsettled && window.browser == BrowserKind::Firefox;
    questions[window.process].push_back({.window = window.handle,
                                         .wantsPage = &window == first,
                                         .processes = wantsHistory ? list_.firefoxProcesses() : 0});
  }
  for (auto& [id, asked] : questions) {
    Process& process = processes_[id];
    if (!process.thread) {
      const auto window =
          std::ranges::find_if(windows_, [id](const Window& its) { return its.process == id; });
      process.reader = std::make_shared<MsaaPageReader>(window->browser, id);
      process.thread = threadOf(process.reader);
    }
    if (process.thread->isAsking()) continue;
    const auto answers = std::make_shared<std::vector<WindowAnswer>>();
    process.answers = answers;
    process.isLate = process.hurries > 0;
    if (process.hurries > 0) --process.hurries;
    process.thread->ask([reader = process.reader, asked = std::move(asked), answers] {
      *answers = reader->read(asked);
    });
  }
}

bool DesktopWindowSystem::isDue(const Window& window) const {
  if (window.kind != WindowKind::Unsettled) return false;
  return clock_.elapsed() - window.firstSeen < kNewFor || pass_ % kThoroughEvery == 0;
}

// Only answers to this pass's questions are waited for. A browser whose answer is late
// does not hold up the next pass.
void DesktopWindowSystem::await() {
  const Deadline deadline(kPassLimit);
  for (auto& [id, process] : processes_) {
    if (!process.answers || process.isLate) continue;
    process.isLate = !process.thread->awaitAnswer(deadline.left());
    if (process.isLate) process.hurries = kHurriesAfterLate;
  }
}

void DesktopWindowSystem::takeAnswers() {
  for (auto& [id, process] : processes_) {
    if (!process.thread || process.thread->isAsking()) continue;
    process.isLate = false;
    const auto answers = std::exchange(process.answers, nullptr);
    if (!answers) continue;
    for (const WindowAnswer& answer : *answers) take(answer);
  }
}

void DesktopWindowSystem::take(const WindowAnswer& answer) {
  Window* const window = find(answer.window);
  if (window == nullptr) return;
  if (window->kind == WindowKind::Unsettled) return settle(*window, answer);
  // A window without an ordinary name for once keeps its place, and its page is not shown.
  if (window->kind != WindowKind::Ordinary || answer.name.empty()) return;
  if (!isOrdinary(window->browser, answer.name)) return;
  window->name = answer.name;
  if (window == front()) reading_ = answer;
}

// MSAA does not show all the parts by which windows are told apart on Linux. So a window
// of Firefox needs settings that say that it remembers history, and more than the name of
// the browser, which a private window may have while it opens.
void DesktopWindowSystem::settle(Window& window, const WindowAnswer& answer) {
  if (isOrdinaryName(window.browser, answer.name) && !isOrdinary(window.browser, answer.name)) {
    window.kind = WindowKind::Private;
    return;
  }
  if (titleKind(window.browser, answer.name) == TitleKind::BrowserNameAlone) return;
  window.name = answer.name;
  const WindowFindings findings{.isFrame = true,
                                .name = answer.name,
                                .hasBars = true,
                                .isMain = true,
                                .remembersHistory = answer.remembersHistory};
  window.kind = kinds_.judge(window.browser, std::to_string(window.process), findings,
                             clock_.elapsed() - window.firstSeen);
}

// The topmost ordinary window. None while a new window above it may turn out to be one.
const DesktopWindowSystem::Window* DesktopWindowSystem::front() const {
  for (const Window& window : windows_) {
    if (!window.isVisible) return nullptr;
    if (window.kind == WindowKind::Ordinary) return &window;
    const bool isNew = clock_.elapsed() - window.firstSeen < kNewFor;
    if (window.kind == WindowKind::Unsettled && isNew) return nullptr;
  }
  return nullptr;
}

void DesktopWindowSystem::play() {
  played_.beginPass();
  ordinary_.clear();
  const Window* const first = front();
  if (first == nullptr) return;
  for (const Window& window : windows_) {
    if (!window.isVisible || window.kind != WindowKind::Ordinary) continue;
    played_.add(window.name);
    ordinary_.push_back(window.handle);
  }
}

// A visit is used up when it is shown. So it is shown only when the scan comes to the
// window, and not while a classic browser is in front of it.
void DesktopWindowSystem::showPage() {
  const Window* const first = front();
  if (first->handle != front_) {
    front_ = first->handle;
    frontSince_ = clock_.elapsed();
  }
  const bool isInFront = clock_.elapsed() - frontSince_ >= kFrontStands;
  const bool isRead = isInFront && reading_ && reading_->window == first->handle;
  const auto page = isRead ? reading_->page : std::optional<PageReading>();
  played_.showInFront(
      presentation_.present(keyOf(first->process, first->handle), page, clock_.elapsed()));
}

DesktopWindowSystem::Window* DesktopWindowSystem::find(HWND handle) {
  const auto window =
      std::ranges::find_if(windows_, [handle](const Window& its) { return its.handle == handle; });
  return window == windows_.end() ? nullptr : &*window;
}

bool DesktopWindowSystem::isAnswerMissing() const {
  return std::ranges::any_of(processes_, [](const auto& entry) { return entry.second.isLate; });
}

// A browser that never answers must not keep the waits short for ever.
std::chrono::milliseconds DesktopWindowSystem::timeToNextPass() const {
  const auto fair = std::chrono::ceil<std::chrono::milliseconds>(duration_) * 4;
  const bool isHurrying = isAnswerMissing() && clock_.elapsed() - lastComplete_ < kLongestHurry;
  return std::max(fair, isHurrying ? kShortestWait : kUsualWait);
}

std::vector<UnreadableBrowser> DesktopWindowSystem::unreadableBrowsers() const {
  std::vector<UnreadableBrowser> browsers;
  for (const Window& window : windows_) {
    const bool isOld = clock_.elapsed() - window.firstSeen >= kSettling;
    if (!window.isVisible || window.kind != WindowKind::Unsettled || !isOld) continue;
    browsers.push_back(
        {std::string(nameOf(window.browser)), UnreadableBrowser::Reason::UnknownKind});
  }
  std::ranges::sort(browsers);
  const auto twice = std::ranges::unique(browsers);
  browsers.erase(twice.begin(), twice.end());
  return browsers;
}

std::size_t DesktopWindowSystem::GetWindowTextA(WindowHandle window, std::span<char> buffer) {
  return PlayedWindows::owns(window) ? played_.GetWindowTextA(window, buffer)
                                     : classic_.GetWindowTextA(window, buffer);
}

std::size_t DesktopWindowSystem::GetClassNameA(WindowHandle window, std::span<char> buffer) {
  return PlayedWindows::owns(window) ? played_.GetClassNameA(window, buffer)
                                     : classic_.GetClassNameA(window, buffer);
}

WindowHandle DesktopWindowSystem::GetParent(WindowHandle window) {
  return PlayedWindows::owns(window) ? played_.GetParent(window) : classic_.GetParent(window);
}

WindowHandle DesktopWindowSystem::GetWindow(WindowHandle window, WindowRelation relation) {
  return PlayedWindows::owns(window) ? played_.GetWindow(window, relation)
                                     : classic_.GetWindow(window, relation);
}

std::size_t DesktopWindowSystem::SendMessageA(WindowHandle window, WindowMessage message,
                                              std::span<char> buffer) {
  return PlayedWindows::owns(window) ? played_.SendMessageA(window, message, buffer)
                                     : classic_.SendMessageA(window, message, buffer);
}

}  // namespace quorrix
