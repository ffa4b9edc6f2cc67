#include "platform/linux/browser_programs.h"

#include <unistd.h>

#include <algorithm>
#include <set>
#include <string_view>

namespace quorrix {
namespace {

constexpr std::size_t kMostPrograms = 256;

// A program that is just starting may not have its names yet. One that never gets
// any is asked less and less often.
constexpr std::chrono::milliseconds kFirstRetry{500};
constexpr std::chrono::milliseconds kLongestRetry{8000};

struct ProgramNames {
  std::string_view program;
  std::string_view toolkit;
  BrowserKind kind;
};

constexpr ProgramNames kBrowsers[] = {
    {"Firefox", "Gecko", BrowserKind::Firefox},
    {"Chromium", "Chromium", BrowserKind::Chromium},
    {"Google Chrome", "Chromium", BrowserKind::GoogleChrome},
    {"epiphany", "gtk", BrowserKind::GnomeWeb},
};

}  // namespace

void BrowserPrograms::beginLook() {
  if (isListing_) return;
  list_.startOver();
  isListing_ = true;
}

bool BrowserPrograms::advance() {
  const Question programs{Question::Topic::Children, registryRoot()};
  if (isListing_ && list_.has({programs})) takeList();
  bool isThrough = !isListing_;
  for (auto& [name, candidate] : candidates_) {
    if (!candidate.isRejected) isThrough &= vet(candidate);
  }
  std::erase_if(candidates_, [this](const auto& entry) { return browsers_.contains(entry.first); });
  return isThrough;
}

void BrowserPrograms::takeList() {
  isListing_ = false;
  const Question programs{Question::Topic::Children, registryRoot()};
  const auto roots = childrenIn(list_[programs], kMostPrograms);
  if (!roots) return;
  std::set<std::string> present;
  for (const AccessibleId& root : *roots) {
    present.insert(root.peer);
    if (!browsers_.contains(root.peer)) candidates_.try_emplace(root.peer, bus_, root);
  }
  const auto isGone = [&](const auto& entry) { return !present.contains(entry.first); };
  std::erase_if(candidates_, isGone);
  std::erase_if(browsers_, isGone);
}

// True when there is nothing to wait for.
bool BrowserPrograms::vet(Candidate& candidate) {
  if (clock_.elapsed() < candidate.nextTry) return true;
  using Topic = Question::Topic;
  const Question processId{Topic::ProcessId, candidate.root};
  if (!candidate.inquiry.has({processId})) return false;
  const std::uint32_t process = numberIn(candidate.inquiry[processId]).value_or(0);
  // Quorrix cannot answer while it waits.
  candidate.isRejected = process == static_cast<std::uint32_t>(getpid());
  if (candidate.isRejected) return true;

  const Question name{Topic::Name, candidate.root};
  const Question toolkit{Topic::ToolkitName, candidate.root};
  if (!candidate.inquiry.has({name, toolkit})) return false;
  const std::string programName = nameIn(candidate.inquiry[name]).value_or(std::string());
  const std::string toolkitName = nameIn(candidate.inquiry[toolkit]).value_or(std::string());
  if (programName.empty() || toolkitName.empty()) {
    candidate.inquiry.startOver();
    candidate.interval = std::clamp(candidate.interval * 2, kFirstRetry, kLongestRetry);
    candidate.nextTry = clock_.elapsed() + candidate.interval;
    return true;
  }
  const auto* const browser = std::ranges::find_if(kBrowsers, [&](const ProgramNames& names) {
    return names.program == programName && names.toolkit == toolkitName;
  });
  candidate.isRejected = browser == std::end(kBrowsers);
  if (!candidate.isRejected) {
    browsers_[candidate.root.peer] = {candidate.root, browser->kind, process};
  }
  return true;
}

void BrowserPrograms::clear() {
  list_.startOver();
  isListing_ = false;
  candidates_.clear();
  browsers_.clear();
}

}  // namespace quorrix
