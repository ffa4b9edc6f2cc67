#include "platform/linux/window_list.h"

#include <atspi/atspi-constants.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "platform/text_encoding.h"

namespace quorrix {
namespace {

// Every this many passes the programs that are no browsers are looked at as well.
constexpr unsigned kThoroughEvery = 5;
constexpr std::size_t kMostPrograms = 256;
constexpr std::size_t kMostWindowsOfAProgram = 64;

}  // namespace

void WindowList::refresh(const Deadline& deadline) {
  isThorough_ = pass_++ % kThoroughEvery == 0 || !isOrderKnown();
  frontIsActive_ = false;
  newcomers_.clear();
  if (isThorough_) {
    // A program that is just starting may not have said yet what its windows are.
    eraseWindows([](const Window& window) { return !window.isFrame; });
  }
  askKnownPrograms(deadline);
  vetNewPrograms(deadline);
  listNewPrograms(deadline);
  lookAtWindows(deadline);
  if (!frontIsActive_) findActiveAmongOthers(deadline);
  if (!isOrderKnown()) findTopmostBrowser();
}

// The list of programs, the windows of those that are due, and whether the window
// used last still is: nothing of this needs another's answer, so it is one batch.
void WindowList::askKnownPrograms(const Deadline& deadline) {
  std::vector<Message> calls;
  std::vector<std::string> asked;
  calls.push_back(childrenCall(registryRoot()));
  for (const auto& [name, program] : programs_) {
    if (!program.isListed || !(program.isBrowser || isThorough_)) continue;
    calls.push_back(childrenCall(program.root));
    asked.push_back(name);
  }
  const Window* front = frontBrowserFrame();
  if (front) calls.push_back(stateCall(front->id));

  const std::vector<Answer> answers = bus_.ask(calls, deadline);
  if (front && hasState(statesIn(answers.back().message).value_or(0), ATSPI_STATE_ACTIVE)) {
    frontIsActive_ = true;
    noteIsUsed(front->id);
  }
  if (const auto roots = childrenIn(answers[0].message, kMostPrograms)) takePrograms(*roots);
  for (std::size_t i = 0; i < asked.size(); ++i) {
    const auto program = programs_.find(asked[i]);
    const auto children = childrenIn(answers[i + 1].message, kMostWindowsOfAProgram);
    if (program != programs_.end() && children) takeWindows(program->second, *children);
  }
}

void WindowList::takePrograms(const std::vector<AccessibleId>& roots) {
  std::set<std::string> present;
  for (const AccessibleId& root : roots) {
    present.insert(root.peer);
    programs_.try_emplace(root.peer, Program{.root = root});
  }
  std::erase_if(programs_, [&](const auto& entry) { return !present.contains(entry.first); });
  eraseWindows([&](const Window& window) { return !present.contains(window.id.peer); });
}

void WindowList::takeWindows(Program& program, const std::vector<AccessibleId>& children) {
  program.isListed = true;
  eraseWindows([&](const Window& window) {
    return window.id.peer == program.root.peer &&
           std::ranges::find(children, window.id) == children.end();
  });
  for (const AccessibleId& child : children) {
    if (find(child) == windows_.end()) newcomers_.push_back(child);
  }
}

template <typename Gone>
void WindowList::eraseWindows(Gone gone) {
  std::erase_if(windows_, [&](const Window& window) {
    const bool isGone = gone(window);
    if (isGone) onClosed_(window.id);
    return isGone;
  });
}

void WindowList::vetNewPrograms(const Deadline& deadline) {
  std::vector<Message> calls;
  std::vector<Program*> asked;
  for (auto& [name, program] : programs_) {
    if (program.isVetted) continue;
    calls.push_back(processIdCall(name));
    asked.push_back(&program);
  }
  const std::vector<Answer> answers = bus_.ask(calls, deadline);
  for (std::size_t i = 0; i < asked.size(); ++i) {
    if (answers[i].outcome == Answer::Outcome::Late) continue;
    asked[i]->isVetted = true;
    asked[i]->isOurs = numberIn(answers[i].message) == static_cast<std::uint32_t>(getpid());
  }
}

// Asks for the windows, and greets the program first, whose answer is of no use: a
// Chromium to which nobody has introduced himself never says that a window is active.
void WindowList::listNewPrograms(const Deadline& deadline) {
  std::vector<Message> calls;
  std::vector<Program*> asked;
  for (auto& [name, program] : programs_) {
    if (!program.isVetted || program.isOurs || program.isListed) continue;
    calls.push_back(greetingCall(program.root));
    calls.push_back(childrenCall(program.root));
    asked.push_back(&program);
  }
  const std::vector<Answer> answers = bus_.ask(calls, deadline);
  for (std::size_t i = 0; i < asked.size(); ++i) {
    const Answer& list = answers[2 * i + 1];
    asked[i]->isListed = list.outcome != Answer::Outcome::Late;
    const auto children = childrenIn(list.message, kMostWindowsOfAProgram);
    if (children) takeWindows(*asked[i], *children);
  }
}

// Looks at new windows, and in a thorough pass again at those which the scan has
// not read: they may have been given another title or been chosen since. Browsers
// keep popups without a title, which may turn into windows later.
void WindowList::lookAtWindows(const Deadline& deadline) {
  std::vector<Message> calls;
  std::vector<AccessibleId> known;
  const bool hasOrder = isOrderKnown();
  for (const Window& window : windows_) {
    const bool isSettled = hasOrder && belongsToBrowser(window.id) && !window.title.empty();
    if (!isThorough_ || !window.isFrame || isSettled) continue;
    known.push_back(window.id);
    calls.push_back(nameCall(window.id));
    calls.push_back(stateCall(window.id));
  }
  for (const AccessibleId& id : newcomers_) {
    calls.push_back(roleCall(id));
    calls.push_back(nameCall(id));
    calls.push_back(stateCall(id));
  }
  const std::vector<Answer> answers = bus_.ask(calls, deadline);
  std::size_t next = 0;
  for (const AccessibleId& id : known) {
    takeLook(id, nullptr, answers[next], answers[next + 1]);
    next += 2;
  }
  for (const AccessibleId& id : newcomers_) {
    takeLook(id, &answers[next], answers[next + 1], answers[next + 2]);
    next += 3;
  }
}

// `role` is given for a window that is not in the list yet. One that did not answer
// stays out of the list and so counts as new again.
void WindowList::takeLook(const AccessibleId& id, const Answer* role, const Answer& name,
                          const Answer& state) {
  const std::optional<std::string> title = nameIn(name.message);
  if (!title) return;
  if (role) {
    const std::optional<std::uint32_t> kind = numberIn(role->message);
    if (!kind) return;
    windows_.push_back({.id = id, .isFrame = *kind == ATSPI_ROLE_FRAME, .title = {}});
  }
  const auto window = find(id);
  window->title = *title;
  const bool isActive = hasState(statesIn(state.message).value_or(0), ATSPI_STATE_ACTIVE);
  if (!isActive || !window->isFrame || title->empty()) return;
  frontIsActive_ = true;
  noteIsUsed(id);
}

// A browser stays in front after another kind of program, such as this one, became
// active; only another browser's window takes its place.
void WindowList::findActiveAmongOthers(const Deadline& deadline) {
  const Window* front = frontBrowserFrame();
  std::vector<Message> calls;
  std::vector<AccessibleId> asked;
  for (const Window& window : windows_) {
    const bool isOther = window.isFrame && !window.title.empty() && belongsToBrowser(window.id);
    if (!isOther || &window == front) continue;
    calls.push_back(stateCall(window.id));
    asked.push_back(window.id);
  }
  const std::vector<Answer> answers = bus_.ask(calls, deadline);
  for (std::size_t i = 0; i < asked.size(); ++i) {
    if (hasState(statesIn(answers[i].message).value_or(0), ATSPI_STATE_ACTIVE)) {
      return noteIsUsed(asked[i]);
    }
  }
}

// A stack that lacks one of them, as XWayland's lacks the windows of Wayland itself,
// tells nothing.
void WindowList::findTopmostBrowser() {
  const std::vector<std::string> stack = desktop_.titlesOfWindowStack();
  const Window* topmost = nullptr;
  auto topmostPlace = stack.end();
  for (const Window& window : windows_) {
    if (!isBrowserFrame(window)) continue;
    const auto place = std::ranges::find(stack, window.title);
    if (place == stack.end()) return;
    if (topmost && place >= topmostPlace) continue;
    topmost = &window;
    topmostPlace = place;
  }
  if (topmost) noteIsUsed(topmost->id);
}

void WindowList::noteIsUsed(const AccessibleId& id) {
  const auto window = find(id);
  window->wasUsed = true;
  std::rotate(windows_.begin(), window, window + 1);
}

void WindowList::forgetOrder() {
  for (Window& window : windows_) window.wasUsed = false;
}

std::vector<AccessibleId> WindowList::frames() const {
  std::vector<AccessibleId> frames;
  const bool hasOrder = isOrderKnown();
  for (const Window& window : windows_) {
    if (!window.isFrame || window.title.empty()) continue;
    if (hasOrder || !isBrowserFrame(window)) frames.push_back(window.id);
  }
  return frames;
}

std::string WindowList::titleOf(const AccessibleId& frame, const Deadline& deadline) {
  const auto window = find(frame);
  if (window == windows_.end()) return {};
  if (!belongsToBrowser(frame)) return window->title;
  const Message call[] = {nameCall(frame)};
  const std::vector<Answer> answers = bus_.ask(call, deadline);
  if (answers[0].outcome == Answer::Outcome::Refused) return {};
  if (auto title = nameIn(answers[0].message)) window->title = std::move(*title);
  return window->title;
}

void WindowList::noteIsRead(const AccessibleId& frame) {
  const auto program = programs_.find(frame.peer);
  if (program != programs_.end()) program->second.isBrowser = true;
}

void WindowList::clear() {
  programs_.clear();
  windows_.clear();
  pass_ = 0;
}

std::vector<WindowList::Window>::iterator WindowList::find(const AccessibleId& id) {
  return std::ranges::find(windows_, id, &Window::id);
}

bool WindowList::belongsToBrowser(const AccessibleId& id) const {
  const auto program = programs_.find(id.peer);
  return program != programs_.end() && program->second.isBrowser;
}

bool WindowList::isBrowserFrame(const Window& window) const {
  return window.isFrame && desktop_.isBrowserTitle(windows1252FromUtf8(window.title));
}

// Windows that were used precede those that were not.
bool WindowList::isOrderKnown() const {
  std::size_t browsers = 0;
  for (const Window& window : windows_) {
    if (!isBrowserFrame(window)) continue;
    if (window.wasUsed) return true;
    ++browsers;
  }
  return browsers < 2;
}

const WindowList::Window* WindowList::frontBrowserFrame() const {
  const auto window = std::ranges::find_if(windows_, [this](const Window& candidate) {
    return candidate.isFrame && !candidate.title.empty() && belongsToBrowser(candidate.id);
  });
  return window == windows_.end() ? nullptr : &*window;
}

}  // namespace quorrix
