#include "platform/windows/desktop_window_system.h"

#include <algorithm>
#include <utility>

#include "platform/windows/firefox_settings.h"

namespace quorrix {
namespace {

// A window whose kind is not known is asked again every so many passes once it is no
// longer new.
constexpr unsigned kThoroughEvery = 5;
constexpr std::chrono::milliseconds kNewFor{2000};
constexpr std::chrono::milliseconds kSettling{10'000};
constexpr std::chrono::milliseconds kShortestWait{20};
constexpr std::chrono::milliseconds kLongestHurry{2000};

std::string keyOf(const BrowserWindow& window) {
  return std::to_string(window.process) + ' ' +
         std::to_string(reinterpret_cast<std::uintptr_t>(window.handle));
}

}  // namespace

DesktopWindowSystem::DesktopWindowSystem(Clock& clock, const CodePage& codePage)
    : clock_(clock), classic_(codePage), played_(codePage) {}

// What the browser shows now counts as a visit again. An answer about the time before is
// not used.
void DesktopWindowSystem::prepareForTracking() {
  presentation_ = BrowserPresentation();
  for (auto& [id, process] : processes_) process.answers.reset();
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

// A window that is minimised keeps what is known of it.
void DesktopWindowSystem::listWindows() {
  std::vector<Window> known = std::exchange(windows_, {});
  for (const BrowserWindow& found : visibleBrowserWindows()) {
    const auto same = std::ranges::find_if(known, [&](const Window& window) {
      return window.found.handle == found.handle && window.found.process == found.process &&
             window.found.browser == found.browser;
    });
    Window window;
    window.found = found;
    window.firstSeen = clock_.elapsed();
    if (same != known.end()) {
      window = std::move(*same);
      known.erase(same);
    }
    window.isVisible = true;
    windows_.push_back(std::move(window));
  }
  for (Window& window : known) {
    window.isVisible = false;
    if (::IsWindow(window.found.handle)) {
      windows_.push_back(std::move(window));
    } else {
      presentation_.forgetFrame(keyOf(window.found));
    }
  }
  std::erase_if(processes_, [this](const auto& entry) {
    const bool isGone = std::ranges::none_of(
        windows_, [&](const Window& window) { return window.found.process == entry.first; });
    if (isGone) kinds_.forget(std::to_string(entry.first));
    return isGone;
  });
}

// The name of a window is known before its page is asked for.
void DesktopWindowSystem::ask() {
  std::map<DWORD, std::vector<WindowQuestion>> questions;
  const Window* const first = front();
  for (const Window& window : windows_) {
    if (!window.isVisible || !(&window == first || isDue(window))) continue;
    questions[window.found.process].push_back({window.found.handle, &window == first});
  }
  for (auto& [id, asked] : questions) {
    Process& process = processes_[id];
    if (!process.thread) {
      const auto window = std::ranges::find_if(
          windows_, [id](const Window& its) { return its.found.process == id; });
      process.thread = std::make_unique<QuestionThread>();
      process.reader = std::make_shared<MsaaPageReader>(window->found.browser, id);
    }
    if (process.thread->isAsking()) continue;
    const auto answers = std::make_shared<std::vector<WindowAnswer>>();
    process.answers = answers;
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
  window->name = answer.name;
  if (window->kind == WindowKind::Unsettled) return settle(*window);
  // Without its name, or with another one, the window is not an ordinary one for now.
  const bool isOrdinary =
      !answer.name.empty() && isOrdinaryName(window->found.browser, answer.name);
  if (!isOrdinary) window->kind = WindowKind::Unsettled;
  if (isOrdinary && window == front()) reading_ = answer;
}

// MSAA does not show the parts by which windows are told apart on Linux. So a window of
// Firefox needs settings that say that it remembers history.
void DesktopWindowSystem::settle(Window& window) {
  WindowFindings findings{.isFrame = true, .name = window.name, .hasBars = true, .isMain = true};
  if (!window.name.empty() && window.found.browser == BrowserKind::Firefox) {
    findings.remembersHistory = firefoxRemembersHistory(window.found.process);
  }
  window.kind = kinds_.judge(window.found.browser, std::to_string(window.found.process), findings,
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
    ordinary_.push_back(window.found.handle);
  }
}

// A visit is used up when it is shown. So it is shown only when the scan comes to the
// window, and not while a classic browser is in front of it.
void DesktopWindowSystem::showPage() {
  const Window* const first = front();
  const bool isRead = reading_ && reading_->window == first->found.handle;
  const auto page = isRead ? reading_->page : std::optional<PageReading>();
  played_.showInFront(presentation_.present(keyOf(first->found), page, clock_.elapsed()));
}

DesktopWindowSystem::Window* DesktopWindowSystem::find(HWND handle) {
  const auto window = std::ranges::find_if(
      windows_, [handle](const Window& its) { return its.found.handle == handle; });
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
        {std::string(nameOf(window.found.browser)), UnreadableBrowser::Reason::UnknownKind});
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
