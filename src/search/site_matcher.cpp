#include "search/site_matcher.h"

#include <string>

#include "datafiles/site_record.h"

namespace quorrix {
namespace {

std::optional<TextSearch> soughtText(const CodePage& codePage, const std::string& searchText) {
  const auto text = codePage.exactFromUtf8(searchText);
  return text ? std::optional<TextSearch>(std::in_place, codePage, *text) : std::nullopt;
}

// The stamp and its end mark; empty if the field has no end mark.
std::string_view stampOf(std::span<const char> record) {
  const auto field = fieldOf(record, site_record::kAccessStamp);
  const auto end = field.find(kStampEnd);
  return end == std::string_view::npos ? std::string_view() : field.substr(0, end + 1);
}

}  // namespace

SiteMatcher::SiteMatcher(const CodePage& codePage, const SearchCriteria& criteria)
    : criteria_(criteria), text_(soughtText(codePage, criteria.searchText)) {}

bool SiteMatcher::canMatch() const {
  return criteria_.userSearchType != UserSearchType::Url || !criteria_.searchText.empty();
}

bool SiteMatcher::matches(std::span<const char> record) {
  if (!canMatch()) return false;
  const auto field = fieldOf(record, site_record::kSiteAddress);
  return fieldHoldsText(field) && matches(field, stampDate(stampOf(record)));
}

bool SiteMatcher::matchesUnvisited(std::string_view siteAddress) const {
  return criteria_.userSearchType == UserSearchType::Url && canMatch() && holdsText(siteAddress);
}

// `field` is the address with its padding. Searching it is cheaper than cutting off the
// padding, and a text that is not in the field is not in the address.
bool SiteMatcher::matches(std::string_view field, const CalendarDate& visited) {
  switch (criteria_.userSearchType) {
    case UserSearchType::Url:
      return holdsText(field);
    case UserSearchType::Date:
      return isOnOrAfterSearchDate(visited);
    case UserSearchType::Both:
      // The date comes first, so that a search date that cannot be read fails whatever
      // the addresses contain.
      return isOnOrAfterSearchDate(visited) && holdsText(field);
  }
  return false;
}

bool SiteMatcher::holdsText(std::string_view field) const {
  return text_ && text_->isIn(field) && text_->isIn(fieldText(field));
}

// If no record has an address, the search date is never read.
bool SiteMatcher::isOnOrAfterSearchDate(const CalendarDate& visited) {
  if (!searchDate_) searchDate_ = readCalendarDate(criteria_.searchDate);
  return *searchDate_ <= visited;
}

}  // namespace quorrix
