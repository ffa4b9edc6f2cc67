// The code page that Windows uses for the language of a locale.
#pragma once

#include <string_view>

namespace quorrix {

// `locale` is a name like "sr_RS.UTF-8@latin". The language and its script count, the
// character set does not. 1252 for every language without a single-byte page of its own.
[[nodiscard]] unsigned codePageOfLocale(std::string_view locale);

}  // namespace quorrix
