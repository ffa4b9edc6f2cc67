#include "platform/linux/chromium_page_reader.h"

#include <atspi/atspi-constants.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace quorrix {
namespace {

constexpr std::string_view kContainerClass = "ContentsContainerView";
constexpr std::string_view kToolBarClass = "MultiContentsViewMiniToolbar";
constexpr std::size_t kMostChildren = 64;

// The classes from the frame down to the view with both sides. In version 150 there is
// one more panel, of class View, above that view.
constexpr std::string_view kWayToView[] = {"NonClientView", "BrowserFrameView", "BrowserView",
                                           "View"};
constexpr std::string_view kViewClass = "MultiContentsView";
constexpr unsigned kDeepestView = 6;

// A window in which the tool bars were not found is searched again after this many
// readings.
constexpr unsigned kReadingsBetweenSearches = 50;

// The view is checked for a split every this many readings.
constexpr unsigned kReadingsBetweenLooks = 5;

// The address of the error page that Chromium shows instead of a page that it could not
// load. The committed address is then that of the page.
constexpr std::string_view kErrorPage = "chrome-error:";

}  // namespace

// Asking for the relations also makes Chromium build its documents: the first answers
// contain none, and later ones do.
std::optional<WindowReading> ChromiumPageReader::read() {
  WindowReading reading;
  const Question name{Topic::Name, frame_};
  if (!inquiry_.has(firstQuestions())) return std::nullopt;
  reading.name = nameIn(inquiry_[name]).value_or(std::string());
  if (findDocument() == Step::Missing) return std::nullopt;
  if (findSides() == Step::Missing) return std::nullopt;
  if (chooseSide() == Step::Missing) return std::nullopt;
  if (readPage(reading) == Step::Missing) return std::nullopt;
  inquiry_.startOver();
  search_.startOver();
  ++readings_;
  if (readingsUntilSearch_ > 0) --readingsUntilSearch_;
  return reading;
}

// The questions of every reading, and those that follow if nothing has changed. All
// answers then arrive together.
std::vector<Question> ChromiumPageReader::firstQuestions() const {
  std::vector<Question> questions{{Topic::Name, frame_}, {Topic::Relations, frame_}};
  if (shown_) questions.push_back({Topic::DocumentAttributes, *shown_});
  if (!sides_.empty()) questions.push_back({Topic::Description, sides_[side_].label});
  return questions;
}

// A document that is being replaced has no parent. It is then in the same container as
// the document before it.
ChromiumPageReader::Step ChromiumPageReader::findDocument() {
  auto document = embeddedIn(inquiry_[{Topic::Relations, frame_}]);
  if (document && (document != document_ || !container_)) {
    const Question above{Topic::Parent, *document};
    if (!inquiry_.has({above})) return Step::Missing;
    if (auto container = parentIn(inquiry_[above])) container_ = std::move(container);
  }
  document_ = std::move(document);
  return Step::Done;
}

ChromiumPageReader::Step ChromiumPageReader::findSides() {
  if (!sides_.empty() || readingsUntilSearch_ > 0) return Step::Done;
  AccessibleId view;
  if (findView(view) == Step::Missing) return Step::Missing;
  if (!view.path.empty()) {
    std::vector<Question> classes;
    if (childrenOf(view, Topic::Attributes, classes) == Step::Missing) return Step::Missing;
    sides_.clear();
    std::size_t containers = 0;
    for (const Question& question : classes) {
      if (attributeIn(search_[question], "class") != kContainerClass) continue;
      ++containers;
      if (findSide(question.object) == Step::Missing) {
        sides_.clear();
        return Step::Missing;
      }
    }
    // If the tool bar of one is missing, it is not known which side is in use.
    if (sides_.size() != containers) sides_.clear();
  }
  side_ = 0;
  // What was known about a split belongs to the earlier sides, of which there may have been
  // more. So the next reading looks again.
  activeSide_.reset();
  readings_ = 0;
  if (sides_.empty()) readingsUntilSearch_ = kReadingsBetweenSearches;
  return Step::Done;
}

// Searches up from the page's document, otherwise down from the frame. The second way is
// needed because the frame does not embed a tab that was moved to its own window until
// the tab loads another page, and because the document of a side panel is not in the
// view.
ChromiumPageReader::Step ChromiumPageReader::findView(AccessibleId& view) {
  if (container_) {
    const Question above{Topic::Parent, *container_};
    const Question attributes{Topic::Attributes, *container_};
    if (!search_.has({above, attributes})) return Step::Missing;
    auto parent = parentIn(search_[above]);
    if (parent && attributeIn(search_[attributes], "class") == kContainerClass) {
      view = *std::move(parent);
      return Step::Done;
    }
  }
  std::vector<AccessibleId> level{frame_};
  for (unsigned depth = 0; depth < kDeepestView && !level.empty(); ++depth) {
    std::vector<Question> classes;
    for (const AccessibleId& panel : level) {
      if (childrenOf(panel, Topic::Attributes, classes) == Step::Missing) return Step::Missing;
    }
    level.clear();
    for (const Question& question : classes) {
      const std::string own = attributeIn(search_[question], "class").value_or(std::string());
      if (own == kViewClass) {
        view = question.object;
        return Step::Done;
      }
      const bool isOnWay = std::ranges::any_of(
          kWayToView, [&](std::string_view name) { return own.starts_with(name); });
      if (isOnWay) level.push_back(question.object);
    }
  }
  return Step::Done;
}

ChromiumPageReader::Step ChromiumPageReader::findSide(const AccessibleId& container) {
  std::vector<Question> classes;
  if (childrenOf(container, Topic::Attributes, classes) == Step::Missing) return Step::Missing;
  const auto toolBar = std::ranges::find_if(classes, [this](const Question& question) {
    return attributeIn(search_[question], "class") == kToolBarClass;
  });
  if (toolBar == classes.end()) return Step::Done;
  const Question child{Topic::ChildAt, toolBar->object, 0};
  if (!search_.has({child})) return Step::Missing;
  if (const auto label = childAtIn(search_[child])) {
    sides_.push_back({.container = container, .toolBar = toolBar->object, .label = *label});
  }
  return Step::Done;
}

ChromiumPageReader::Step ChromiumPageReader::childrenOf(const AccessibleId& parent, Topic topic,
                                                        std::vector<Question>& questions) {
  const Question list{Topic::Children, parent};
  if (!search_.has({list})) return Step::Missing;
  const auto children = childrenIn(search_[list], kMostChildren);
  if (!children) return Step::Done;
  const std::vector<Question> own = questionsAbout(*children, topic);
  if (!search_.has(own)) return Step::Missing;
  std::ranges::copy(own, std::back_inserter(questions));
  return Step::Done;
}

// The frame may embed a document that is not a page. From when a side panel such as the
// reading mode opens until a page is loaded, it embeds the document of the panel, or none
// once a tab is selected. The page is then the one in the side that is in use.
ChromiumPageReader::Step ChromiumPageReader::chooseSide() {
  shown_ = document_;
  if (sides_.empty()) return Step::Done;
  const auto ofDocument = std::ranges::find(sides_, container_, &Side::container);
  const bool isPage = document_ && ofDocument != sides_.end();
  if (ofDocument != sides_.end()) side_ = static_cast<std::size_t>(ofDocument - sides_.begin());
  if (sides_.size() > 1 && lookForSplit() == Step::Missing) return Step::Missing;
  const bool isInUse = !activeSide_ || activeSide_ == side_;
  if (isPage && isInUse) return Step::Done;
  if (activeSide_) {
    side_ = *activeSide_;
  } else if (findShowingSide() == Step::Missing) {
    return Step::Missing;
  }
  return documentIn(sides_[side_]);
}

ChromiumPageReader::Step ChromiumPageReader::lookForSplit() {
  if (readings_ % kReadingsBetweenLooks != 0) return Step::Done;
  std::vector<Question> states;
  for (const Side& side : sides_) {
    states.push_back({Topic::States, side.toolBar});
    states.push_back({Topic::States, side.label});
  }
  if (!inquiry_.has(states)) return Step::Missing;
  const auto inactive =
      std::ranges::find_if(sides_, [&](const Side& side) { return isShowing(side.label); });
  const auto active =
      std::ranges::find_if(sides_, [&](const Side& side) { return !isShowing(side.label); });
  const bool isSplit = inactive != sides_.end() && active != sides_.end();
  activeSide_.reset();
  if (isSplit) activeSide_ = static_cast<std::size_t>(active - sides_.begin());
  return Step::Done;
}

// Finds the side in use if the view is not split.
ChromiumPageReader::Step ChromiumPageReader::findShowingSide() {
  std::vector<Question> states;
  for (const Side& side : sides_) states.push_back({Topic::States, side.container});
  if (!inquiry_.has(states)) return Step::Missing;
  const auto showing =
      std::ranges::find_if(sides_, [&](const Side& side) { return isShowing(side.container); });
  if (showing != sides_.end()) side_ = static_cast<std::size_t>(showing - sides_.begin());
  return Step::Done;
}

bool ChromiumPageReader::isShowing(const AccessibleId& object) const {
  return hasState(statesIn(inquiry_[{Topic::States, object}]).value_or(0), ATSPI_STATE_SHOWING);
}

ChromiumPageReader::Step ChromiumPageReader::documentIn(Side& side) {
  const Question list{Topic::Children, side.container};
  if (!inquiry_.has({list})) return Step::Missing;
  auto children = childrenIn(inquiry_[list], kMostChildren);
  if (!children) children.emplace();
  if (*children != side.children) {
    const std::vector<Question> roles = questionsAbout(*children, Topic::Role);
    if (!inquiry_.has(roles)) return Step::Missing;
    const auto found = std::ranges::find_if(roles, [this](const Question& question) {
      return numberIn(inquiry_[question]) == ATSPI_ROLE_DOCUMENT_WEB;
    });
    side.document.reset();
    if (found != roles.end()) side.document = found->object;
    side.children = *std::move(children);
  }
  shown_ = side.document;
  return Step::Done;
}

ChromiumPageReader::Step ChromiumPageReader::readPage(WindowReading& reading) {
  std::vector<Question> questions;
  if (shown_) questions.push_back({Topic::DocumentAttributes, *shown_});
  if (!sides_.empty()) questions.push_back({Topic::Description, sides_[side_].label});
  if (!inquiry_.has(questions)) return Step::Missing;
  std::optional<std::string> committed;
  if (!sides_.empty()) {
    committed = nameIn(inquiry_[questions.back()]);
    if (!committed) sides_.clear();  // the window has created new ones
  }
  if (!shown_) {
    // Without a document, the address identifies the page.
    if (committed) {
      reading.page = {.document = frame_.path + *committed, .address = *committed};
    }
    return Step::Done;
  }
  const auto loaded = documentAddressIn(inquiry_[questions.front()]);
  if (!loaded) return Step::Done;  // the document is being replaced
  const bool isError = loaded->starts_with(kErrorPage);
  reading.page = {.document = shown_->peer + shown_->path,
                  .address = committed && !isError ? *committed : *loaded,
                  .isComplete = !loaded->empty(),
                  .isAddressNewer = committed && !isError && *committed != *loaded};
  return Step::Done;
}

}  // namespace quorrix
