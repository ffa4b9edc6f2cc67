// What the user searches the recorded sites for.
#pragma once

#include <string>

namespace quorrix {

enum class UserSearchType { Url, Date, Both };

// Texts as the user entered them, in UTF-8.
struct SearchCriteria {
  UserSearchType userSearchType = UserSearchType::Url;
  std::string searchText;  // the address contains it, ignoring letter case
  std::string searchDate;  // "M/d/yy" or "M/d/yyyy": the visit was on that day or later
};

}  // namespace quorrix
