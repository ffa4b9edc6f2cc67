#include "platform/linux/browser_windows.h"

#include <atspi/atspi-constants.h>

#include <algorithm>
#include <utility>

#include "platform/linux/firefox_settings.h"

namespace quorrix {
namespace {

// The list of programs, and the windows of the browsers that are not in front, are read
// every this many passes.
constexpr unsigned kThoroughEvery = 5;

// Chromium has two hidden frames for each of its windows.
constexpr std::size_t kMostWindowsOfAProgram = 300;

// How long a window counts as new, and after how long it is examined only now and then.
constexpr std::chrono::milliseconds kNewFor{2000};
constexpr std::chrono::milliseconds kSlowAfter{10'000};
constexpr unsigned kSlowEvery = 50;

// The hidden frames of Chromium never get a name, so new windows without one are examined
// less often.
constexpr unsigned kNamelessEvery = 2;

// An answer to "are you active?" that took longer than this is out of date.
constexpr std::chrono::milliseconds kOldAfter{10'000};

// The most windows that are asked in one pass whether they became active. The others are
// asked in the following passes. A window without a name is not asked.
constexpr std::size_t kMostOthersAsked = 8;

Question children(const BrowserProgram& program) {
  return {Question::Topic::Children, program.root};
}

}  // namespace

BrowserWindows::BrowserWindows(AccessibilityBus& bus, Clock& clock, WindowStack stack,
                               std::function<void(const AccessibleId&)> onClosed)
    : bus_(bus),
      clock_(clock),
      stack_(std::move(stack)),
      onClosed_(std::move(onClosed)),
      programs_(bus, clock),
      gnomeWeb_(clock, "org.gnome.Epiphany") {}

void BrowserWindows::beginPass() {
  const bool isThorough = pass_++ % kThoroughEvery == 0;
  isActiveOneKnown_ = false;
  if (isThorough) programs_.beginLook();
  const std::string front = windows_.empty() ? std::string() : windows_.front().id.peer;
  for (auto& [name, watch] : watches_) {
    if (watch.isListing || !(isThorough || name == front)) continue;
    watch.list.startOver();
    watch.isListing = true;
  }
  for (Window& window : windows_) {
    if (isDueForALook(window)) window.examination->startOver();
    if (window.examination && window.browser == BrowserKind::GnomeWeb) gnomeWeb_.advance();
  }
  wereOthersAsked_ = false;
  if (front.empty()) return;
  const bool isAnswerMissing = !watches_.at(front).asked.empty();
  if (isAnswerMissing) {
    askWhichOfTheOthersIsActive();
  } else {
    askForStates(windows_.front().id);
  }
}

// A new window is examined often, since it is still changing. One that does not settle is
// examined less and less often.
bool BrowserWindows::isDueForALook(const Window& window) const {
  if (!window.examination || !window.examination->isThrough()) return false;
  const auto age = clock_.elapsed() - window.firstSeen;
  if (age < kNewFor) return !window.name.empty() || pass_ % kNamelessEvery == 0;
  return pass_ % (age < kSlowAfter ? kThoroughEvery : kSlowEvery) == 0;
}

void BrowserWindows::askForStates(const AccessibleId& id) {
  Watch& watch = watches_.at(id.peer);
  if (std::ranges::find(watch.asked, id) != watch.asked.end()) return;
  if (watch.asked.empty()) watch.askedAt = clock_.elapsed();
  watch.asked.push_back(id);
}

bool BrowserWindows::advance() {
  bool isThrough = programs_.advance();
  dropGonePrograms();
  watchNewPrograms();
  isThrough &= advanceLists();
  isThrough &= examineWindows();
  isThrough &= advanceActivity();
  if (isOrderKnown()) {
    orderUnknownSince_ = clock_.elapsed();
  } else if (!isStillLooking() && (isThrough || clock_.elapsed() - orderUnknownSince_ >= kNewFor)) {
    findTopmost();  // do not wait for ever for a program that does not answer
  }
  return isThrough;
}

void BrowserWindows::watchNewPrograms() {
  for (const auto& [name, program] : programs_.browsers()) {
    const auto [watch, isNew] = watches_.try_emplace(name, bus_);
    if (!isNew) continue;
    // The answer is not used, but a Chromium that has not received this call never
    // reports a window as active.
    static_cast<void>(watch->second.greeting.has({{Question::Topic::Greeting, program.root}}));
    watch->second.isListing = true;
    watch->second.since = clock_.elapsed();
  }
}

void BrowserWindows::dropGonePrograms() {
  const auto isGone = [this](const std::string& name) {
    return !programs_.browsers().contains(name);
  };
  std::erase_if(watches_, [&](const auto& entry) {
    if (isGone(entry.first)) kinds_.forget(entry.first);
    return isGone(entry.first);
  });
  eraseWindows([&](const Window& window) { return isGone(window.id.peer); });
}

bool BrowserWindows::advanceLists() {
  bool isThrough = true;
  for (auto& [name, watch] : watches_) {
    if (!watch.isListing) continue;
    const BrowserProgram& program = programs_.browsers().at(name);
    if (!watch.list.has({children(program)})) {
      isThrough = false;
      continue;
    }
    watch.isListing = false;
    watch.wasListed = true;
    auto ids = childrenIn(watch.list[children(program)], kMostWindowsOfAProgram + 1);
    if (!ids) continue;
    // The window in use may be among those that do not fit.
    if (ids->size() > kMostWindowsOfAProgram) ids->clear();
    takeWindows(program, *ids);
  }
  return isThrough;
}

void BrowserWindows::takeWindows(const BrowserProgram& program,
                                 const std::vector<AccessibleId>& ids) {
  eraseWindows([&](const Window& window) {
    return window.id.peer == program.root.peer && std::ranges::find(ids, window.id) == ids.end();
  });
  for (const AccessibleId& id : ids) {
    if (id.peer != program.root.peer || find(id) != windows_.end()) continue;
    windows_.push_back(
        {.id = id,
         .browser = program.kind,
         .name = {},
         .firstSeen = clock_.elapsed(),
         .examination = std::make_unique<WindowExamination>(bus_, program.kind, id)});
    askForStates(id);
  }
}

template <typename Gone>
void BrowserWindows::eraseWindows(Gone gone) {
  std::erase_if(windows_, [&](const Window& window) {
    const bool isGone = gone(window);
    if (isGone) onClosed_(window.id);
    return isGone;
  });
}

bool BrowserWindows::examineWindows() {
  bool isThrough = true;
  for (Window& window : windows_) {
    if (!window.examination || window.examination->isThrough()) continue;
    if (window.examination->advance()) {
      settle(window);
    } else {
      isThrough = false;
    }
  }
  return isThrough;
}

void BrowserWindows::settle(Window& window) {
  WindowFindings findings = window.examination->findings();
  const BrowserProgram& program = programs_.browsers().at(window.id.peer);
  if (wantsHistory(window.browser, findings)) {
    findings.remembersHistory = firefoxRemembersHistory("/proc", program.processId);
  }
  const auto age = clock_.elapsed() - window.firstSeen;
  window.name = findings.name;
  window.hasOrdinaryMark = findings.hasOrdinaryMark;
  window.kind = window.browser == BrowserKind::GnomeWeb
                    ? judgeGnomeWeb(findings, program.processId, gnomeWeb_.processId(), age)
                    : kinds_.judge(window.browser, window.id.peer, findings, age);
  if (window.kind == WindowKind::Ordinary || window.kind == WindowKind::Private) {
    window.examination.reset();
  }
}

bool BrowserWindows::advanceActivity() {
  bool isThrough = takeActivity();
  if (isThrough && !isActiveOneKnown_ && !wereOthersAsked_) {
    askWhichOfTheOthersIsActive();
    isThrough = takeActivity();
  }
  return isThrough;
}

// A browser stays in front after another kind of program, such as this one, became
// active; only another browser window takes its place. An answer that took too long is
// ignored.
bool BrowserWindows::takeActivity() {
  bool isThrough = true;
  for (auto& [name, watch] : watches_) {
    if (watch.asked.empty()) continue;
    const std::vector<Question> questions = questionsAbout(watch.asked, Question::Topic::States);
    if (!watch.activity.has(questions)) {
      isThrough = false;
      continue;
    }
    const bool isOld = clock_.elapsed() - watch.askedAt > kOldAfter;
    for (const Question& question : questions) {
      const auto states = statesIn(watch.activity[question]).value_or(0);
      if (!isOld && hasState(states, ATSPI_STATE_ACTIVE)) noteIsActive(question.object);
    }
    watch.asked.clear();
    watch.activity.startOver();
  }
  return isThrough;
}

// If two windows report that they are active and one is in front, that one stays there.
void BrowserWindows::noteIsActive(const AccessibleId& id) {
  if (find(id) == windows_.end()) return;
  if (!isActiveOneKnown_ || windows_.front().id == id) noteIsUsed(id);
  isActiveOneKnown_ = true;
}

void BrowserWindows::askWhichOfTheOthersIsActive() {
  wereOthersAsked_ = true;
  const std::size_t others = windows_.empty() ? 0 : windows_.size() - 1;
  std::size_t asked = 0;
  for (std::size_t i = 0; i < others && asked < kMostOthersAsked; ++i) {
    const Window& other = windows_[1 + nextOther_++ % others];
    if (other.name.empty()) continue;
    askForStates(other.id);
    ++asked;
  }
}

// A stack that lacks one of the windows is not used: XWayland's, for example, lacks
// native Wayland windows. The desktop's titles lack what browsers add to a window's
// accessible name, such as the profile. If a title is only the beginning of the name, and
// not that of an ordinary window, it belongs to another program.
void BrowserWindows::findTopmost() {
  const auto stack = stack_();
  if (!stack) return;
  const Window* topmost = nullptr;
  auto topmostPlace = stack->end();
  for (const Window& window : windows_) {
    if (window.kind != WindowKind::Ordinary) continue;
    const auto place = std::ranges::find_if(*stack, [&](const std::string& title) {
      return window.name == title ||
             (window.name.starts_with(title) && isOrdinaryName(window.browser, title));
    });
    if (place == stack->end()) return;
    if (topmost && place >= topmostPlace) continue;
    topmost = &window;
    topmostPlace = place;
  }
  if (topmost) noteIsUsed(topmost->id);
}

void BrowserWindows::noteIsUsed(const AccessibleId& id) {
  const auto window = find(id);
  window->wasUsed = true;
  std::rotate(windows_.begin(), window, window + 1);
}

bool BrowserWindows::takeName(const AccessibleId& id, const std::string& name) {
  const auto window = find(id);
  if (window == windows_.end()) return false;
  window->name = name;
  if (isOrdinaryName(window->browser, name)) return window->kind == WindowKind::Ordinary;
  if (!window->hasOrdinaryMark) window->kind = WindowKind::Private;
  return false;
}

std::vector<const BrowserWindows::Window*> BrowserWindows::ordinary() const {
  std::vector<const Window*> windows;
  if (!isOrderKnown()) return windows;
  for (const Window& window : windows_) {
    if (window.kind == WindowKind::Ordinary) windows.push_back(&window);
  }
  return windows;
}

// Windows that were used precede those that were not.
bool BrowserWindows::isOrderKnown() const {
  std::size_t unused = 0;
  for (const Window& window : windows_) {
    if (window.kind == WindowKind::Ordinary && window.wasUsed) return true;
    if (window.kind == WindowKind::Ordinary || mayTurnOutOrdinary(window)) ++unused;
  }
  return unused < 2 && !isListMissing();
}

// True while a browser that was just found has not listed its windows yet.
bool BrowserWindows::isListMissing() const {
  return std::ranges::any_of(watches_, [this](const auto& entry) {
    return !entry.second.wasListed && clock_.elapsed() - entry.second.since < kNewFor;
  });
}

bool BrowserWindows::isStillLooking() const {
  return isListMissing() || std::ranges::any_of(windows_, [this](const Window& window) {
           return mayTurnOutOrdinary(window);
         });
}

// True for a new window that is still being examined. If it were ignored, another window
// might count as the only one.
bool BrowserWindows::mayTurnOutOrdinary(const Window& window) const {
  if (window.kind != WindowKind::Unsettled) return false;
  if (clock_.elapsed() - window.firstSeen >= kNewFor) return false;
  const bool isLookedAt = window.examination && window.examination->isThrough();
  return !isLookedAt || (!window.name.empty() && isOrdinaryName(window.browser, window.name));
}

void BrowserWindows::forgetOrder() {
  for (Window& window : windows_) window.wasUsed = false;
  for (auto& [name, watch] : watches_) {
    watch.asked.clear();
    watch.activity.startOver();
  }
  orderUnknownSince_ = clock_.elapsed();
}

void BrowserWindows::clear() {
  programs_.clear();
  kinds_ = {};
  watches_.clear();
  windows_.clear();
  pass_ = 0;
}

std::vector<BrowserWindows::Window>::iterator BrowserWindows::find(const AccessibleId& id) {
  return std::ranges::find(windows_, id, &Window::id);
}

}  // namespace quorrix
