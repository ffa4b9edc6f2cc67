#include "platform/linux/firefox_page_reader.h"

#include <atspi/atspi-constants.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace quorrix {
namespace {

constexpr std::string_view kTabPanelsId = "tabbrowser-tabpanels";
constexpr std::string_view kSelectedClass = "deck-selected";
constexpr std::string_view kDeveloperTools = "about:devtools-toolbox";
constexpr std::string_view kErrorPage = "about:neterror";
constexpr std::size_t kMostChildren = 200;
constexpr std::size_t kMostTabs = 1000;
constexpr unsigned kDeepestTabPanels = 4;

// A window in which the tabs were not found is searched again after this many
// readings.
constexpr unsigned kReadingsBetweenSearches = 50;

// An error page has other content at first, while it is loading. A page that was seen
// loading this many times is not an error page.
constexpr unsigned kLooksWhileLoading = 4;

// A document that never finishes loading is judged this many times at most.
constexpr unsigned kMostLooks = 20;

bool mayHoldTabPanels(std::uint32_t role) {
  return role == ATSPI_ROLE_PANEL || role == ATSPI_ROLE_SECTION || role == ATSPI_ROLE_FILLER ||
         role == ATSPI_ROLE_SCROLL_PANE || role == ATSPI_ROLE_GROUPING;
}

bool isSelected(const Message& attributes) {
  const auto classes = attributeIn(attributes, "class");
  return classes && classes->find(kSelectedClass) != std::string::npos;
}

}  // namespace

std::optional<WindowReading> FirefoxPageReader::read() {
  WindowReading reading;
  const Question name{Topic::Name, frame_};
  if (!inquiry_.has(firstQuestions())) return std::nullopt;
  reading.name = nameIn(inquiry_[name]).value_or(std::string());
  std::optional<AccessibleId> document;
  if (findTabPanels() == Step::Missing) return std::nullopt;
  if (findDocument(document) == Step::Missing) return std::nullopt;
  if (document && readDocument(*document, reading) == Step::Missing) return std::nullopt;
  inquiry_.startOver();
  search_.startOver();
  wasSearched_ = false;
  if (readingsUntilSearch_ > 0) --readingsUntilSearch_;
  return reading;
}

// The questions of every reading, and those that follow if nothing has changed. All
// answers then arrive together.
std::vector<Question> FirefoxPageReader::firstQuestions() const {
  std::vector<Question> questions{{Topic::Name, frame_}};
  if (!tab_ || wasSearched_) return questions;
  questions.push_back({Topic::Attributes, tab_->pane});
  questions.push_back({Topic::ChildAt, tab_->browser, 0});
  if (!judged_.isFinal) return questions;
  questions.push_back({Topic::DocumentAttributes, judged_.document});
  questions.push_back({Topic::States, judged_.document});
  return questions;
}

// Searches level by level, never in a document, a menu or a tool bar.
FirefoxPageReader::Step FirefoxPageReader::findTabPanels() {
  if (tabPanels_ || readingsUntilSearch_ > 0) return Step::Done;
  std::vector<AccessibleId> level{frame_};
  for (unsigned depth = 0; depth < kDeepestTabPanels && !level.empty(); ++depth) {
    const std::vector<Question> lists = questionsAbout(level, Topic::Children);
    if (!search_.has(lists)) return Step::Missing;
    std::vector<AccessibleId> children;
    for (const Question& list : lists) {
      const auto ids = childrenIn(search_[list], kMostChildren);
      if (ids && children.size() < kMostChildren)
        std::ranges::copy(*ids, std::back_inserter(children));
    }
    const std::vector<Question> roles = questionsAbout(children, Topic::Role);
    if (!search_.has(roles)) return Step::Missing;
    level.clear();
    for (const Question& role : roles) {
      if (mayHoldTabPanels(numberIn(search_[role]).value_or(0))) level.push_back(role.object);
    }
    const std::vector<Question> attributes = questionsAbout(level, Topic::Attributes);
    if (!search_.has(attributes)) return Step::Missing;
    for (const Question& question : attributes) {
      if (attributeIn(search_[question], "id") != kTabPanelsId) continue;
      tabPanels_ = question.object;
      return Step::Done;
    }
  }
  readingsUntilSearch_ = kReadingsBetweenSearches;
  return Step::Done;
}

FirefoxPageReader::Step FirefoxPageReader::findDocument(std::optional<AccessibleId>& document) {
  if (!tabPanels_) return findEmbedded(document);
  for (;;) {
    if (!tab_ && findSelectedTab() == Step::Missing) return Step::Missing;
    if (!tab_) return findEmbedded(document);
    const Question pane{Topic::Attributes, tab_->pane};
    const Question child{Topic::ChildAt, tab_->browser, 0};
    if (!inquiry_.has({pane, child})) return Step::Missing;
    if (isSelected(inquiry_[pane])) {
      document = childAtIn(inquiry_[child]);
      // The tab may have been given another internal frame.
      if (!inquiry_[child]) tab_.reset();
      return Step::Done;
    }
    tab_.reset();  // another one was selected
    if (wasSearched_) return Step::Done;
  }
}

FirefoxPageReader::Step FirefoxPageReader::findEmbedded(std::optional<AccessibleId>& document) {
  const Question relations{Topic::Relations, frame_};
  if (!inquiry_.has({relations})) return Step::Missing;
  document = embeddedIn(inquiry_[relations]);
  return Step::Done;
}

FirefoxPageReader::Step FirefoxPageReader::findSelectedTab() {
  if (wasSearched_) return Step::Done;
  const Question list{Topic::Children, *tabPanels_};
  if (!search_.has({list})) return Step::Missing;
  const auto panes = childrenIn(search_[list], kMostTabs);
  if (!panes) {
    tabPanels_.reset();  // the window has created new ones
    wasSearched_ = true;
    return Step::Done;
  }
  const std::vector<Question> attributes = questionsAbout(*panes, Topic::Attributes);
  if (!search_.has(attributes)) return Step::Missing;
  const auto selected = std::ranges::find_if(
      attributes, [this](const Question& question) { return isSelected(search_[question]); });
  if (selected != attributes.end() && findBrowser(selected->object) == Step::Missing) {
    return Step::Missing;
  }
  wasSearched_ = true;
  return Step::Done;
}

// Finds the pane's internal frame that does not contain the developer tools.
FirefoxPageReader::Step FirefoxPageReader::findBrowser(const AccessibleId& pane) {
  const Question list{Topic::Children, pane};
  if (!search_.has({list})) return Step::Missing;
  const auto parts = childrenIn(search_[list], kMostChildren);
  if (!parts) return Step::Done;
  const std::vector<Question> roles = questionsAbout(*parts, Topic::Role);
  if (!search_.has(roles)) return Step::Missing;
  for (const Question& role : roles) {
    if (numberIn(search_[role]) != ATSPI_ROLE_INTERNAL_FRAME) continue;
    const Question child{Topic::ChildAt, role.object, 0};
    if (!search_.has({child})) return Step::Missing;
    const auto document = childAtIn(search_[child]);
    if (!document) continue;
    const Question attributes{Topic::DocumentAttributes, *document};
    if (!search_.has({attributes})) return Step::Missing;
    const std::string address = documentAddressIn(search_[attributes]).value_or(std::string());
    if (address.starts_with(kDeveloperTools)) continue;
    tab_ = {pane, role.object};
    return Step::Done;
  }
  return Step::Done;
}

// An address belongs to the tab and not to the document: a document that is being left
// has none.
FirefoxPageReader::Step FirefoxPageReader::readDocument(const AccessibleId& document,
                                                        WindowReading& reading) {
  const Question attributes{Topic::DocumentAttributes, document};
  const Question states{Topic::States, document};
  std::vector<Question> questions{attributes, states};
  if (judged_.document != document) judged_ = {.document = document};
  if (!judged_.isFinal) {
    questions.push_back({Topic::ChildAt, document, 0});
    questions.push_back({Topic::ChildAt, document, 1});
  }
  if (!inquiry_.has(questions)) return Step::Missing;
  const auto address = documentAddressIn(inquiry_[attributes]);
  const auto stateSet = statesIn(inquiry_[states]);
  if (!address || address->empty() || !stateSet) return Step::Done;
  const bool isBusy = hasState(*stateSet, ATSPI_STATE_BUSY);
  if (!judged_.isFinal) {
    if (judge(document) == Step::Missing) return Step::Missing;
    const bool isWhole = !isBusy && judged_.hasContent;
    judged_.isFinal = isWhole || ++judged_.looks == kMostLooks;
    if (judged_.isFinal) judged_.hasContent = true;  // empty pages are pages, too
  }
  reading.page = {
      .document = document.peer + document.path,
      .address = judged_.isErrorPage ? std::string(kErrorPage) : *address,
      .isComplete = judged_.hasContent && (!isBusy || judged_.looks >= kLooksWhileLoading),
      .isLoading = isBusy};
  return Step::Done;
}

// The document of an error page has the address of the page that could not be shown. It
// is recognised by its parts: in version 140 a text followed by a row of buttons, in
// later versions a card. The parts exist once the error page has loaded; its address and
// title are set before that. A document without content is not complete either: Firefox
// may show one for a moment while it switches to another process or restores a tab.
FirefoxPageReader::Step FirefoxPageReader::judge(const AccessibleId& document) {
  const Question first{Topic::ChildAt, document, 0};
  const Question second{Topic::ChildAt, document, 1};
  if (!inquiry_.has({first, second})) return Step::Missing;
  std::vector<AccessibleId> parts;
  for (const Question& child : {first, second}) {
    if (auto part = childAtIn(inquiry_[child])) parts.push_back(std::move(*part));
  }
  const std::vector<Question> attributes = questionsAbout(parts, Topic::Attributes);
  if (!inquiry_.has(attributes)) return Step::Missing;
  judged_.isErrorPage = std::ranges::any_of(attributes, [this](const Question& question) {
    return attributeIn(inquiry_[question], "tag") == "net-error-card" ||
           attributeIn(inquiry_[question], "id") == "netErrorButtonContainer";
  });
  judged_.hasContent =
      !attributes.empty() && attributeIn(inquiry_[attributes.front()], "id") != "text-container";
  return Step::Done;
}

}  // namespace quorrix
