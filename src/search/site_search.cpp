#include "search/site_search.h"

#include <optional>
#include <span>
#include <string_view>

#include "datafiles/access_stamp.h"
#include "datafiles/fixed_record_file.h"
#include "datafiles/site_record.h"
#include "search/text_search.h"

namespace quorrix {
namespace {

class RecordMatcher {
 public:
  RecordMatcher(const CodePage& codePage, const SearchCriteria& criteria)
      : criteria_(criteria), text_(soughtText(codePage, criteria)) {}

  // `field` is the address with its padding. Searching it is cheaper than cutting off the
  // padding, and a text that is not in the field is not in the address.
  [[nodiscard]] bool matches(std::string_view field, const CalendarDate& visited) {
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

 private:
  [[nodiscard]] bool holdsText(std::string_view field) const {
    return text_ && text_->isIn(field) && text_->isIn(fieldText(field));
  }

  static std::optional<TextSearch> soughtText(const CodePage& codePage,
                                              const SearchCriteria& criteria) {
    const auto text = codePage.exactFromUtf8(criteria.searchText);
    return text ? std::optional<TextSearch>(std::in_place, codePage, *text) : std::nullopt;
  }

  // If no record has an address, the search date is never read.
  bool isOnOrAfterSearchDate(const CalendarDate& visited) {
    if (!searchDate_) searchDate_ = readCalendarDate(criteria_.searchDate);
    return *searchDate_ <= visited;
  }

  const SearchCriteria& criteria_;
  std::optional<TextSearch> text_;  // nullopt if no address can contain the text
  std::optional<CalendarDate> searchDate_;
};

// The stamp and its end mark; empty if the field has no end mark.
std::string_view stampOf(std::span<const char> record) {
  const auto field = fieldOf(record, site_record::kAccessStamp);
  const auto end = field.find(kStampEnd);
  return end == std::string_view::npos ? std::string_view() : field.substr(0, end + 1);
}

}  // namespace

std::vector<std::string> searchSiteFile(FileSystem& files, const WorkingPaths& paths,
                                        const CodePage& codePage, const SearchCriteria& criteria) {
  FixedRecordFile file(files, paths.currentNodesFile, site_record::kLength, FileAccess::Read);
  std::vector<std::string> found;
  if (criteria.userSearchType == UserSearchType::Url && criteria.searchText.empty()) return found;
  RecordMatcher matcher(codePage, criteria);
  file.scan(file.recordsBegun(), FixedRecordFile::ReadFailures::Throw,
            [&](std::uint64_t, std::span<const char> record) {
              const auto field = fieldOf(record, site_record::kSiteAddress);
              if (!fieldHoldsText(field)) return true;
              const CalendarDate visited = stampDate(stampOf(record));
              if (matcher.matches(field, visited)) found.emplace_back(fieldText(field));
              return true;
            });
  return found;
}

}  // namespace quorrix
