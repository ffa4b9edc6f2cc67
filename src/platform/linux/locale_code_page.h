// The code page that Windows uses for the language of a locale.
#pragma once

#include <string_view>

namespace quorrix {

// `locale` is a name like "sr_RS.UTF-8@latin". The language and its script count, the
// character set does not. A language that Windows does not know has the page of its
// relatives in the same script. 1252 for every language without a single-byte page.
[[nodiscard]] unsigned codePageOfLocale(std::string_view locale);

}  // namespace quorrix
