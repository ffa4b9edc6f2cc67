#include "platform/linux/page_reader.h"

#include <atspi/atspi-constants.h>

#include <utility>
#include <vector>

namespace quorrix {
namespace {

// A window without an address bar is searched again after this many passes: one in
// full screen may have one later.
constexpr unsigned kPassesBetweenSearches = 50;

}  // namespace

std::optional<PageReading> PageReader::read(const AccessibleId& frame, const Deadline& deadline) {
  const Message relations[] = {relationsCall(frame)};
  const auto document = embeddedIn(bus_.ask(relations, deadline)[0].message);
  if (!document) return std::nullopt;

  const auto known = bars_.find(frame);
  const bool hasBar = known != bars_.end() && known->second.id;
  std::vector<Message> calls;
  calls.push_back(documentAttributesCall(*document));
  if (hasBar) calls.push_back(textCall(*known->second.id));
  const std::vector<Answer> answers = bus_.ask(calls, deadline);
  const auto address = documentAddressIn(answers[0].message);
  if (!address || address->address.empty()) return std::nullopt;

  PageReading page{document->peer + document->path, address->address, std::nullopt};
  if (!address->mayBeStale) return page;
  if (hasBar) {
    page.bar = readBar(known->second, *document, answers[1], deadline);
  } else {
    searchFor(bars_[frame], frame, deadline);
  }
  return page;
}

// Whether the bar is focused and the document busy is asked only when the text or
// the document is another one than before: an unchanged text means what it meant.
std::optional<AddressBarReading> PageReader::readBar(Bar& bar, const AccessibleId& document,
                                                     const Answer& text, const Deadline& deadline) {
  if (text.outcome == Answer::Outcome::Refused) {
    bar = Bar{};  // the window has made itself a new one
    return std::nullopt;
  }
  std::optional<std::string> shown = textIn(text.message);
  if (!shown) return std::nullopt;
  const bool isSame = bar.isRead && bar.reading.text == *shown && bar.document == document;
  if (isSame && !bar.reading.documentBusy) return bar.reading;

  const Message calls[] = {stateCall(*bar.id), stateCall(document)};
  const std::vector<Answer> answers = bus_.ask(calls, deadline);
  const auto barStates = statesIn(answers[0].message);
  const auto documentStates = statesIn(answers[1].message);
  bar.isRead = barStates && documentStates;
  if (!bar.isRead) return std::nullopt;
  bar.document = document;
  bar.reading = {std::move(*shown), hasState(*barStates, ATSPI_STATE_FOCUSED),
                 hasState(*documentStates, ATSPI_STATE_BUSY)};
  return bar.reading;
}

void PageReader::searchFor(Bar& bar, const AccessibleId& frame, const Deadline& deadline) {
  if (bar.passesUntilSearch > 0) {
    --bar.passesUntilSearch;
    return;
  }
  if (!bar.search) bar.search.emplace(frame);
  if (!bar.search->advance(bus_, deadline)) return;
  bar.id = bar.search->found();
  bar.search.reset();
  if (!bar.id) bar.passesUntilSearch = kPassesBetweenSearches;
}

}  // namespace quorrix
