#include "platform/linux/gnome_web_page_reader.h"

#include <atspi/atspi-constants.h>

#include <algorithm>

namespace quorrix {
namespace {

using Topic = Question::Topic;

constexpr std::size_t kMostChildren = 64;
constexpr std::size_t kMostPanels = 200;
constexpr unsigned kDeepestView = 16;

constexpr std::size_t kMostTabs = 100;
constexpr std::size_t kMostRoots = 16;

// A window in which no page was found is searched again, first at once and then less
// and less often.
constexpr unsigned kMostReadingsBetweenSearches = 20;

// The most fillers that are asked in each reading whether they have got a page.
constexpr std::size_t kMostAwaited = 8;

bool isShowing(const Message& states) {
  return hasState(statesIn(states).value_or(0), ATSPI_STATE_SHOWING);
}

}  // namespace

std::optional<WindowReading> GnomeWebPageReader::read() {
  WindowReading reading;
  const Question name{Topic::Name, frame_};
  if (!inquiry_.has({name})) return std::nullopt;
  reading.name = nameIn(inquiry_[name]).value_or(std::string());
  if (!awaited_.empty() && awaitPage() == Step::Missing) return std::nullopt;
  if (!view_ && findView() == Step::Missing) return std::nullopt;
  if (view_ && readView(reading) == Step::Missing) return std::nullopt;
  inquiry_.startOver();
  search_.startOver();
  if (readingsUntilSearch_ > 0) --readingsUntilSearch_;
  return reading;
}

// A new tab has its view at once and gets its page a moment later.
GnomeWebPageReader::Step GnomeWebPageReader::awaitPage() {
  std::vector<Question> questions;
  for (const View& each : awaited_) {
    questions.push_back({Topic::States, each.panel});
    questions.push_back({Topic::ChildAt, each.filler, 0});
  }
  if (!inquiry_.has(questions)) return Step::Missing;
  bool wasTabChosen = false;
  for (const View& each : awaited_) {
    if (isPage(childAtIn(inquiry_[{Topic::ChildAt, each.filler, 0}]))) view_ = each;
    wasTabChosen |= !isShowing(inquiry_[{Topic::States, each.panel}]);
  }
  if (!view_ && !wasTabChosen) return Step::Done;
  awaited_.clear();
  readingsUntilSearch_ = 0;
  readingsBetweenSearches_ = 1;
  return Step::Done;
}

GnomeWebPageReader::Step GnomeWebPageReader::findView() {
  if (readingsUntilSearch_ > 0) return Step::Done;
  std::vector<AccessibleId> panels{frame_};
  std::vector<View> empty;
  for (unsigned depth = 0; depth < kDeepestView && !panels.empty() && !view_; ++depth) {
    if (descend(panels, empty) == Step::Missing) return Step::Missing;
  }
  if (view_) {
    awaited_.clear();
    readingsBetweenSearches_ = 1;
    return Step::Done;
  }
  readingsUntilSearch_ = empty.empty() ? readingsBetweenSearches_ : kMostReadingsBetweenSearches;
  readingsBetweenSearches_ = std::min(2 * readingsBetweenSearches_, kMostReadingsBetweenSearches);
  awaited_ = std::move(empty);
  return Step::Done;
}

// Replaces `panels` by the SHOWING panels and fillers among their children. Sets view_ if
// a child has a page, and appends the fillers that may get one to `empty`.
GnomeWebPageReader::Step GnomeWebPageReader::descend(std::vector<AccessibleId>& panels,
                                                     std::vector<View>& empty) {
  const std::vector<Question> lists = questionsAbout(panels, Topic::Children);
  if (!search_.has(lists)) return Step::Missing;
  std::vector<View> children;
  for (const Question& list : lists) {
    const auto ids = childrenIn(search_[list], kMostChildren);
    if (!ids) continue;
    for (const AccessibleId& id : *ids) children.push_back({list.object, id});
  }
  std::vector<Question> questions;
  for (const View& child : children) {
    questions.push_back({Topic::Role, child.filler});
    questions.push_back({Topic::States, child.filler});
    // For the next level: sent together, the questions take one round trip to the
    // browser.
    questions.push_back({Topic::Children, child.filler});
  }
  if (!search_.has(questions)) return Step::Missing;

  panels.clear();
  for (const View& child : children) {
    const auto role = numberIn(search_[{Topic::Role, child.filler}]).value_or(ATSPI_ROLE_INVALID);
    if (role != ATSPI_ROLE_PANEL && role != ATSPI_ROLE_FILLER) continue;
    const Message& states = search_[{Topic::States, child.filler}];
    if (isShowing(states)) {
      if (panels.size() < kMostPanels) panels.push_back(child.filler);
      continue;
    }
    if (role != ATSPI_ROLE_FILLER || statesIn(states) != std::uint64_t{0}) continue;
    const Question count{Topic::ChildCount, child.filler};
    const Question page{Topic::ChildAt, child.filler, 0};
    if (!search_.has({count, page})) return Step::Missing;
    if (countIn(search_[count]) == 1 && isPage(childAtIn(search_[page]))) {
      view_ = child;
    } else if (empty.size() < kMostAwaited) {
      empty.push_back(child);
    }
  }
  return Step::Done;
}

// Only the objects of a page belong to another program than the frame.
bool GnomeWebPageReader::isPage(const std::optional<AccessibleId>& id) const {
  return id && id->peer != frame_.peer;
}

GnomeWebPageReader::Step GnomeWebPageReader::readView(WindowReading& reading) {
  const Question states{Topic::States, view_->panel};
  const Question page{Topic::ChildAt, view_->filler, 0};
  if (!inquiry_.has({states, page})) return Step::Missing;
  if (!isShowing(inquiry_[states])) {
    view_.reset();  // another tab was selected
    return Step::Done;
  }
  if (tabs_.size() == kMostTabs && !tabs_.contains(view_->filler)) tabs_.clear();
  Tab& tab = tabs_[view_->filler];
  const auto root = childAtIn(inquiry_[page]);
  if (root && root != tab.named) {
    tab.named = root;
    std::erase(tab.roots, *root);
    tab.roots.insert(tab.roots.begin(), *root);
    if (tab.roots.size() > kMostRoots) tab.roots.pop_back();
  }
  std::optional<AccessibleId> document;
  if (findDocument(tab, document) == Step::Missing) return Step::Missing;
  if (!document) return Step::Done;
  const Question attributes{Topic::DocumentAttributes, *document};
  if (!inquiry_.has({attributes})) return Step::Missing;
  const auto address = documentAddressIn(inquiry_[attributes]);
  if (!address || address->empty()) return Step::Done;
  reading.page = {
      .document = document->peer + document->path, .address = *address, .isComplete = true};
  return Step::Done;
}

// After Back to a page that the browser kept in another process, the view still names the
// root of the page that was left. That root is then empty, like those of all pages that
// are kept but not shown, so the root that has a document is the right one.
GnomeWebPageReader::Step GnomeWebPageReader::findDocument(Tab& tab,
                                                          std::optional<AccessibleId>& document) {
  for (std::size_t i = 0; i < tab.roots.size();) {
    const Question pane{Topic::ChildAt, tab.roots[i], 0};
    if (!inquiry_.has({pane})) return Step::Missing;
    if (!inquiry_[pane]) {
      tab.roots.erase(tab.roots.begin() + static_cast<std::ptrdiff_t>(i));  // its page is gone
      continue;
    }
    if (const auto parent = childAtIn(inquiry_[pane])) {
      const Question child{Topic::ChildAt, *parent, 0};
      if (!inquiry_.has({child})) return Step::Missing;
      document = childAtIn(inquiry_[child]);
    }
    if (document) {
      const auto begin = tab.roots.begin();
      std::rotate(begin, begin + static_cast<std::ptrdiff_t>(i),
                  begin + static_cast<std::ptrdiff_t>(i) + 1);
      return Step::Done;
    }
    ++i;
  }
  if (tab.roots.empty()) tab.named.reset();  // so that the next reading adds its root again
  return Step::Done;
}

}  // namespace quorrix
