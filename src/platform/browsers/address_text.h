// The addresses of web pages as browsers report them. All texts are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace quorrix {

// True for a web address: it begins with "http://" or "https://" in any case, has
// something after that, and contains no blank or control character. A browser's own pages
// ("about:", "chrome:", "data:") do not count.
[[nodiscard]] bool isWebAddress(std::string_view address);

// The host and port of a web address, without a user name.
[[nodiscard]] std::string_view hostOf(std::string_view webAddress);

// The address without the user name and password before its host, because visits must not
// be recorded with them.
[[nodiscard]] std::string withoutUser(std::string_view webAddress);

}  // namespace quorrix
