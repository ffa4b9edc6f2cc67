#include "search/site_search.h"

#include <span>

#include "datafiles/fixed_record_file.h"
#include "datafiles/site_record.h"
#include "search/site_matcher.h"

namespace quorrix {

std::vector<std::string> searchSiteFile(FileSystem& files, const WorkingPaths& paths,
                                        const CodePage& codePage, const SearchCriteria& criteria) {
  FixedRecordFile file(files, paths.currentNodesFile, site_record::kLength, FileAccess::Read);
  std::vector<std::string> found;
  SiteMatcher matcher(codePage, criteria);
  if (!matcher.canMatch()) return found;
  file.scan(file.recordsBegun(), FixedRecordFile::ReadFailures::Throw,
            [&](std::uint64_t, std::span<const char> record) {
              if (!matcher.matches(record)) return true;
              found.emplace_back(fieldText(fieldOf(record, site_record::kSiteAddress)));
              return true;
            });
  return found;
}

}  // namespace quorrix
