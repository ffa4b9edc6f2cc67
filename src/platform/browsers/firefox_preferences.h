// What Firefox's command line and its file prefs.js say about remembering history.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace quorrix::firefox_preferences {

inline constexpr std::string_view kNeverRemembers =
    "user_pref(\"browser.privatebrowsing.autostart\", true);";

// Options that make a Firefox treat all of its windows as private, under ordinary names.
inline constexpr std::string_view kPrivateOptions[] = {"--private", "-private"};

// Whether the line of prefs.js says that no window remembers history.
[[nodiscard]] inline bool isNeverRemembering(std::string_view line) {
  return line.starts_with(kNeverRemembers);
}

[[nodiscard]] inline bool isPrivateOption(std::string_view argument) {
  return std::ranges::find(kPrivateOptions, argument) != std::end(kPrivateOptions);
}

}  // namespace quorrix::firefox_preferences
