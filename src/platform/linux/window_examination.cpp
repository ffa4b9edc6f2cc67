#include "platform/linux/window_examination.h"

#include <atspi/atspi-constants.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace quorrix {
namespace {

constexpr std::size_t kMostChildren = 100;

// The classes of the panels from the frame of a Chromium window down to its bars, level
// by level. The bookmark bar exists even if it is not shown.
constexpr std::array<std::string_view, 4> kWayToBars = {"NonClientView", "BrowserFrameView",
                                                        "BrowserView", "TopContainerView"};
constexpr std::string_view kBookmarkBar = "BookmarkBarView";
constexpr std::string_view kSavedTabGroups = "SavedTabGroupBar";

// Firefox's tool bars by id (popups have only the first), and parts of them by id and by
// class.
constexpr std::string_view kNavigationBar = "nav-bar";
constexpr std::string_view kTabBar = "TabsToolbar";
constexpr std::string_view kMenuBar = "toolbar-menubar";
constexpr std::string_view kFirefoxView = "firefox-view-button";
constexpr std::string_view kEndPrivateSession = "reset-pbm-toolbar-button";
constexpr std::string_view kPrivateSign = "private-browsing-indicator-icon";

}  // namespace

// If an answer was refused, a mark may have been missed. Without the bars the kind of the
// window stays open, and it is examined again.
bool WindowExamination::advance() {
  if (isThrough_) return true;
  isThrough_ = look() == Step::Done;
  if (isThrough_ && wasRefused_) findings_.hasBars = false;
  return isThrough_;
}

void WindowExamination::startOver() {
  inquiry_.startOver();
  findings_ = {};
  isThrough_ = false;
  wasRefused_ = false;
}

WindowExamination::Step WindowExamination::look() {
  const Question role{Topic::Role, frame_};
  const Question name{Topic::Name, frame_};
  std::vector<Question> questions{name};
  if (!role_) questions.push_back(role);
  if (!inquiry_.has(questions)) return Step::Missing;
  if (!role_) role_ = numberIn(inquiry_[role]);
  findings_.isFrame = role_ == ATSPI_ROLE_FRAME;
  findings_.name = nameIn(inquiry_[name]).value_or(std::string());
  if (!findings_.isFrame || findings_.name.empty()) return Step::Done;
  switch (browser_) {
    case BrowserKind::Firefox:
      return lookAtFirefox();
    case BrowserKind::Chromium:
    case BrowserKind::GoogleChrome:
      return lookAtChromium();
    case BrowserKind::GnomeWeb:
      break;
  }
  return Step::Done;
}

// Appends the children of all `parents` to `children` and asks for the attributes of
// each.
WindowExamination::Step WindowExamination::childrenOf(const std::vector<AccessibleId>& parents,
                                                      std::vector<AccessibleId>& children) {
  const std::vector<Question> lists = questionsAbout(parents, Topic::Children);
  if (!inquiry_.has(lists)) return Step::Missing;
  for (const Question& list : lists) {
    auto ids = childrenIn(inquiry_[list], kMostChildren);
    wasRefused_ |= !ids;
    if (ids) std::ranges::move(*ids, std::back_inserter(children));
  }
  const bool isKnown = inquiry_.has(questionsAbout(children, Topic::Attributes));
  return isKnown ? Step::Done : Step::Missing;
}

std::string WindowExamination::attribute(const AccessibleId& object, std::string_view name) {
  const Message& attributes = inquiry_[{Topic::Attributes, object}];
  wasRefused_ |= !attributes;
  return attributeIn(attributes, name).value_or(std::string());
}

// Of the windows with a bookmark bar, only ordinary ones have a place for saved tab
// groups in it; popups and apps have no such bar. (The profile button is not a mark: it
// has a description in private windows, but sometimes in ordinary ones too.)
WindowExamination::Step WindowExamination::lookAtChromium() {
  // The answer is not used, but the question makes Chromium build its parts.
  if (!inquiry_.has({{Topic::Relations, frame_}})) return Step::Missing;
  std::vector<AccessibleId> level{frame_};
  std::vector<AccessibleId> panels;
  for (const std::string_view className : kWayToBars) {
    panels.clear();
    if (childrenOf(level, panels) == Step::Missing) return Step::Missing;
    level.clear();
    std::ranges::copy_if(panels, std::back_inserter(level), [&](const AccessibleId& child) {
      return attribute(child, "class").starts_with(className);
    });
  }
  panels.clear();
  if (childrenOf(level, panels) == Step::Missing) return Step::Missing;
  findings_.hasBars = !panels.empty();
  std::erase_if(panels, [this](const AccessibleId& child) {
    return attribute(child, "class") != kBookmarkBar;
  });
  std::vector<AccessibleId> parts;
  if (childrenOf(panels, parts) == Step::Missing) return Step::Missing;
  findings_.hasOrdinaryMark = std::ranges::any_of(parts, [this](const AccessibleId& part) {
    return attribute(part, "class") == kSavedTabGroups;
  });
  findings_.hasPrivateMark = !panels.empty() && !findings_.hasOrdinaryMark;
  return Step::Done;
}

WindowExamination::Step WindowExamination::lookAtFirefox() {
  const Question list{Topic::Children, frame_};
  if (!inquiry_.has({list})) return Step::Missing;
  const auto parts = childrenIn(inquiry_[list], kMostChildren);
  if (!parts) return Step::Done;
  const std::vector<Question> roles = questionsAbout(*parts, Topic::Role);
  if (!inquiry_.has(roles)) return Step::Missing;
  std::vector<AccessibleId> toolBars;
  for (const Question& role : roles) {
    if (numberIn(inquiry_[role]) == ATSPI_ROLE_TOOL_BAR) toolBars.push_back(role.object);
  }
  if (!inquiry_.has(questionsAbout(toolBars, Topic::Attributes))) return Step::Missing;
  for (const AccessibleId& bar : toolBars) {
    const std::string id = attribute(bar, "id");
    findings_.hasBars |= id == kNavigationBar;
    findings_.isMain |= id == kTabBar || id == kMenuBar;
  }
  std::vector<AccessibleId> buttons;
  if (childrenOf(toolBars, buttons) == Step::Missing) return Step::Missing;
  for (const AccessibleId& button : buttons) {
    const std::string id = attribute(button, "id");
    findings_.hasOrdinaryMark |= id == kFirefoxView;
    findings_.canEndSession |= id == kEndPrivateSession;
    findings_.hasPrivateMark |= attribute(button, "class").starts_with(kPrivateSign);
  }
  return Step::Done;
}

}  // namespace quorrix
