// The text of Chromium's address bar, which is not quite the address of the page.
#pragma once

#include <string>
#include <string_view>

namespace quorrix {

enum class ShownAddress {
  Same,     // the bar shows the address under which the page was loaded
  Newer,    // another address of the same host
  Unclear,  // text that is not an address, another host, or this host in its own script
};

// Compares the bar's text with the address of the page. The bar leaves out the scheme,
// "www." and a "/" at the end, and decodes "%41" and "%C3%A9". All texts are UTF-8.
[[nodiscard]] ShownAddress compareWithBar(std::string_view loaded, std::string_view shown);

// The whole address for a text that is Newer.
[[nodiscard]] std::string newerAddress(std::string_view loaded, std::string_view shown);

}  // namespace quorrix
