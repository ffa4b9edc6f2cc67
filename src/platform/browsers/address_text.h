// The addresses of web pages as browsers give them. All texts are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace quorrix {

// True for an address of the web: it begins with "http://" or "https://" in any
// case, has something after that, and holds no blank or control character. A
// browser's own pages ("about:", "chrome:", "data:") do not count.
[[nodiscard]] bool isWebAddress(std::string_view address);

// The host and port of a web address, without a user name.
[[nodiscard]] std::string_view hostOf(std::string_view webAddress);

// The address without a user name and a password in front of its host, which
// have no place in a record of visits.
[[nodiscard]] std::string withoutUser(std::string_view webAddress);

}  // namespace quorrix
