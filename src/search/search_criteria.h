// What the user searches the recorded sites for.
#pragma once

#include <string>

namespace quorrix {

enum class UserSearchType { Url, Date, Both };

// Texts as the user entered them, in single-byte text.
struct SearchCriteria {
  UserSearchType userSearchType;
  std::string searchText;  // what the address must contain
  std::string searchDate;  // month/day/year, the year as two digits
};

}  // namespace quorrix
