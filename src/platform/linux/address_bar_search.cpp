#include "platform/linux/address_bar_search.h"

#include <atspi/atspi-constants.h>

#include <cstdint>
#include <utility>

namespace quorrix {
namespace {

constexpr std::size_t kMostObjects = 1000;
constexpr std::size_t kMostChildren = 100;

bool isContainer(std::uint32_t role) {
  return role == ATSPI_ROLE_PANEL || role == ATSPI_ROLE_TOOL_BAR || role == ATSPI_ROLE_FILLER;
}

}  // namespace

bool AddressBarSearch::advance(AccessibilityBus& bus, const Deadline& deadline) {
  while (!found_ && !level_.empty() && looked_ < kMostObjects) {
    if (deadline.hasPassed() || !descend(bus, deadline)) return false;
  }
  return true;
}

// False when answers are missing; the same level is then asked about again later.
bool AddressBarSearch::descend(AccessibilityBus& bus, const Deadline& deadline) {
  std::vector<Message> calls;
  for (const Place& place : level_) calls.push_back(childrenCall(place.id));
  std::vector<Answer> answers = bus.ask(calls, deadline);

  std::vector<Place> children;
  for (std::size_t i = 0; i < level_.size(); ++i) {
    if (answers[i].outcome == Answer::Outcome::Late) return false;
    const auto ids = childrenIn(answers[i].message, kMostChildren);
    if (!ids) continue;
    for (const AccessibleId& id : *ids) children.push_back({id, level_[i].isInToolBar});
  }
  if (children.size() > kMostObjects) children.resize(kMostObjects);

  calls.clear();
  for (const Place& child : children) calls.push_back(roleCall(child.id));
  answers = bus.ask(calls, deadline);
  std::vector<Place> next;
  for (std::size_t i = 0; i < children.size(); ++i) {
    if (answers[i].outcome == Answer::Outcome::Late) return false;
    const std::uint32_t role = numberIn(answers[i].message).value_or(ATSPI_ROLE_INVALID);
    if (role == ATSPI_ROLE_ENTRY && children[i].isInToolBar) {
      found_ = children[i].id;
      return true;
    }
    if (!isContainer(role)) continue;
    next.push_back({children[i].id, children[i].isInToolBar || role == ATSPI_ROLE_TOOL_BAR});
  }
  looked_ += children.size();
  level_ = std::move(next);
  return true;
}

}  // namespace quorrix
