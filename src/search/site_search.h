// The search over the site file: which recorded addresses hold a text, were last
// visited on or after a day, or both.
#pragma once

#include <string>
#include <vector>

#include "datafiles/working_folder.h"
#include "platform/file_system.h"
#include "search/search_criteria.h"

namespace quorrix {

// The addresses of all matching records of paths.currentNodesFile, up to the end of
// the file and in its order; an address recorded twice comes twice. A missing file is
// created, one that may only be read will do. By Url, an empty text is in no address;
// by Both it is in every one.
//
// Throws the Failure of the file, whose records then count for nothing, or kTypeMismatch
// for a date that cannot be read: that of any record with an address, also by Url,
// and, unless it is by Url, the date sought, as soon as there is a record to compare
// it with.
[[nodiscard]] std::vector<std::string> searchSiteFile(FileSystem& files, const WorkingPaths& paths,
                                                      const SearchCriteria& criteria);

}  // namespace quorrix
