#include "platform/linux/firefox_settings.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <string_view>

namespace quorrix {
namespace {

// A running Firefox keeps this file in its profile open.
constexpr std::string_view kProfileLock = ".parentlock";
constexpr std::string_view kNeverRemembers =
    "user_pref(\"browser.privatebrowsing.autostart\", true);";

// Where the user has placed each button: JSON in a string, so its quotes are escaped.
constexpr std::string_view kPlaces = "user_pref(\"browser.uiCustomization.state\",";
constexpr std::string_view kBeginPlacements = R"(\"placements\":{)";
constexpr std::string_view kButton = R"(\"firefox-view-button\")";
constexpr std::string_view kToolBars[] = {"nav-bar", "TabsToolbar", "toolbar-menubar"};

// Options that make a Firefox treat all of its windows as private, under ordinary names.
constexpr std::string_view kPrivateOptions[] = {"--private", "-private"};

// True only for the line with the places of all buttons, and only if it places this
// button on none of the tool bars that always exist. If the bookmarks tool bar is
// visible, the button on it counts as a mark anyway.
bool isButtonTakenAway(std::string_view line) {
  const std::size_t begin = line.find(kBeginPlacements);
  if (!line.starts_with(kPlaces) || begin == std::string_view::npos) return false;
  const std::string_view placements =
      line.substr(begin, line.find('}', begin + kBeginPlacements.size()) - begin);
  for (const std::string_view bar : kToolBars) {
    const std::string name = "\\\"" + std::string(bar) + "\\\":[";
    const std::size_t list = placements.find(name);
    if (list == std::string_view::npos) continue;
    const std::size_t end = placements.find(']', list);
    if (placements.substr(list, end - list).find(kButton) != std::string_view::npos) return false;
  }
  return true;
}

std::optional<Path> profileOf(const Path& openFiles) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(openFiles, error), end; !error && entry != end;
       entry.increment(error)) {
    const Path file = std::filesystem::read_symlink(entry->path(), error);
    if (!error && file.filename() == kProfileLock) return file.parent_path();
    error.clear();
  }
  return std::nullopt;
}

bool wasStartedPrivate(const Path& commandLine) {
  std::ifstream arguments(commandLine, std::ios::binary);
  for (std::string argument; std::getline(arguments, argument, '\0');) {
    if (std::ranges::find(kPrivateOptions, argument) != std::end(kPrivateOptions)) return true;
  }
  return false;
}

}  // namespace

std::optional<bool> firefoxRemembersHistory(const Path& processes, std::uint32_t processId) {
  const Path process = processes / std::to_string(processId);
  if (wasStartedPrivate(process / "cmdline")) return false;
  const auto profile = profileOf(process / "fd");
  if (!profile) return std::nullopt;
  const Path preferences = *profile / "prefs.js";
  // Opening a pipe would wait for its other end.
  std::error_code missing;
  if (!std::filesystem::is_regular_file(preferences, missing)) return std::nullopt;
  std::ifstream settings(preferences);
  if (!settings) return std::nullopt;
  bool wasTakenAway = false;
  for (std::string line; std::getline(settings, line);) {
    if (line.starts_with(kNeverRemembers)) return false;
    wasTakenAway |= isButtonTakenAway(line);
  }
  if (settings.bad()) return std::nullopt;
  return wasTakenAway ? std::optional(true) : std::nullopt;
}

}  // namespace quorrix
