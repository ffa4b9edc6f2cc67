// The text of Chromium's address bar, which is not quite the address of the page.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorrix {

// The address of a page that was loaded as `loaded` and whose address bar shows `shown`,
// if a script has changed the address since. The bar leaves out the scheme, "www." and a
// "/" at the end, and decodes "%41". nullopt if both are the same, if they are on different
// hosts, and if the bar shows a character that an address does not have, because it cannot
// be told then what it stands for. All texts are UTF-8.
[[nodiscard]] std::optional<std::string> newerAddress(std::string_view loaded,
                                                      std::string_view shown);

}  // namespace quorrix
