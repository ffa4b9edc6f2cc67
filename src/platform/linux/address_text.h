// What the texts mean that a browser shows for an address: its document's full
// address, and the address bar's short form of it. All texts are UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorrix {

// True for an address of the web: it begins with "http://" or "https://" in any
// case, has something behind that, and holds no blank or control character. A
// browser's own pages ("about:", "chrome:", "data:") are none.
[[nodiscard]] bool isWebAddress(std::string_view address);

// The host and port of a web address, without a user name.
[[nodiscard]] std::string_view hostOf(std::string_view webAddress);

// The address without a user name and a password in front of its host, which
// have no place in a record of visits.
[[nodiscard]] std::string withoutUser(std::string_view webAddress);

// The full address that an address bar means, given the address of its document.
// A bar leaves out the scheme, "www." and the slash behind a bare host, and shows
// characters in place of their percent codes: where it means the document's
// address the answer is that very text. nullopt when the bar holds something else
// than an address of the document's host.
[[nodiscard]] std::optional<std::string> addressFromBar(std::string_view documentAddress,
                                                        std::string_view bar);

}  // namespace quorrix
