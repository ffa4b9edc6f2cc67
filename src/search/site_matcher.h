// Decides which records of the site file a search finds. The search window and the
// commands outside of it use the same rules.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "datafiles/access_stamp.h"
#include "platform/code_page.h"
#include "search/search_criteria.h"
#include "search/text_search.h"

namespace quorrix {

class SiteMatcher {
 public:
  // Both must outlive this.
  SiteMatcher(const CodePage& codePage, const SearchCriteria& criteria);

  // False if no record matches, whatever is in it: an empty text is in no address unless a
  // date is sought, too. Such a search need not read any record.
  [[nodiscard]] bool canMatch() const;

  // `record` is one of the site file. A record without an address does not match. Throws
  // kTypeMismatch if a date cannot be read, unless canMatch() is false. This applies to the
  // date of any record with an address, even with UserSearchType::Url. It applies to the date
  // searched for unless the type is Url, as soon as there is a record to compare it with.
  [[nodiscard]] bool matches(std::span<const char> record);

  // Whether an address without a record matches. It has no date, so it does not match if one is
  // sought.
  [[nodiscard]] bool matchesUnvisited(std::string_view siteAddress) const;

 private:
  [[nodiscard]] bool matches(std::string_view field, const CalendarDate& visited);
  [[nodiscard]] bool holdsText(std::string_view field) const;
  [[nodiscard]] bool isOnOrAfterSearchDate(const CalendarDate& visited);

  const SearchCriteria& criteria_;
  std::optional<TextSearch> text_;  // nullopt if no address can contain the text
  std::optional<CalendarDate> searchDate_;
};

}  // namespace quorrix
