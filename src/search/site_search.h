// Searches the site file for the addresses that contain a text, were last visited on or
// after a day, or both.
#pragma once

#include <string>
#include <vector>

#include "datafiles/working_folder.h"
#include "platform/code_page.h"
#include "platform/file_system.h"
#include "search/search_criteria.h"

namespace quorrix {

// Returns the addresses of all matching records of paths.currentNodesFile in the order of
// the file, including a partial record at its end. An address that was recorded twice is
// returned twice. A missing file is created; an existing one need only be readable. With
// UserSearchType::Url an empty text is in no address, and no record is read. With Both it
// is in every address.
//
// Throws the Failure of the file; matches found before it are lost. Throws kTypeMismatch
// if a date cannot be read. This applies to the date of any record with an address, also
// with Url. It applies to the date searched for unless the type is Url, as soon as there
// is a record to compare it with.
[[nodiscard]] std::vector<std::string> searchSiteFile(FileSystem& files, const WorkingPaths& paths,
                                                      const CodePage& codePage,
                                                      const SearchCriteria& criteria);

}  // namespace quorrix
