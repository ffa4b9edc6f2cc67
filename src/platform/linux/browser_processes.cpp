#include "platform/linux/browser_processes.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

namespace quorrix {
namespace {

struct ProcessName {
  std::string_view name;  // as the kernel reports it, at most 15 characters
  BrowserKind kind;
};

constexpr ProcessName kNames[] = {
    {"firefox", BrowserKind::Firefox},          {"firefox-esr", BrowserKind::Firefox},
    {"firefox-bin", BrowserKind::Firefox},      {"chromium", BrowserKind::Chromium},
    {"chrome", BrowserKind::GoogleChrome},      {"epiphany", BrowserKind::GnomeWeb},
    {"epiphany-browse", BrowserKind::GnomeWeb},
};

// How the arguments of helper processes and of browsers without windows begin.
constexpr std::string_view kNoWindows[] = {"--type=", "-contentproc", "--headless", "-headless"};

constexpr std::string_view kSwitches[] = {"ACCESSIBILITY_ENABLED=0", "GNOME_ACCESSIBILITY=0",
                                          "QT_ACCESSIBILITY=0", "NO_AT_BRIDGE=1"};
constexpr std::string_view kSessionBus = "DBUS_SESSION_BUS_ADDRESS=";

constexpr std::string_view kCrashReporter = "chrome_crashpad";  // of Chromium, cut by the kernel

using Environment = std::vector<std::string>;  // as "NAME=value"

std::string contentOf(const Path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// The texts of a file between the separators, including empty ones.
std::vector<std::string> textsIn(const Path& file, std::string_view separators) {
  std::vector<std::string> texts;
  const std::string content = contentOf(file);
  for (std::size_t begin = 0; begin < content.size();) {
    const std::size_t end = std::min(content.find_first_of(separators, begin), content.size());
    texts.push_back(content.substr(begin, end - begin));
    begin = end + 1;
  }
  return texts;
}

std::string nameOfProcess(const Path& process) {
  std::string name = contentOf(process / "comm");
  while (!name.empty() && name.back() == '\n') name.pop_back();
  return name;
}

// When the process started, in clock ticks since the system started; 0 if that is not
// known.
std::uint64_t startOf(const Path& process) {
  constexpr int kFieldsBefore = 19;  // between the name, which is in parentheses, and the time
  const std::string status = contentOf(process / "stat");
  std::istringstream fields(status.substr(status.rfind(')') + 1));
  std::string field;
  for (int i = 0; i < kFieldsBefore; ++i) fields >> field;
  std::uint64_t start = 0;
  fields >> start;
  return start;
}

std::optional<BrowserKind> kindOf(const Path& process) {
  const auto* const known = std::ranges::find(kNames, nameOfProcess(process), &ProcessName::name);
  if (known == std::end(kNames)) return std::nullopt;
  // Chromium joins all its arguments into one text.
  const std::vector<std::string> arguments =
      textsIn(process / "cmdline", std::string_view("\0 ", 2));
  const bool hasWindows = std::ranges::none_of(arguments, [](const std::string& argument) {
    return std::ranges::any_of(
        kNoWindows, [&](std::string_view option) { return argument.starts_with(option); });
  });
  return hasWindows ? std::optional(known->kind) : std::nullopt;
}

bool isOfSession(const Environment& environment, const std::string& bus) {
  const auto given = std::ranges::find_if(
      environment, [](const std::string& entry) { return entry.starts_with(kSessionBus); });
  return given != environment.end() && given->substr(kSessionBus.size()) == bus;
}

bool isNumber(const std::string& name) {
  return !name.empty() &&
         std::ranges::all_of(name, [](unsigned char c) { return std::isdigit(c) != 0; });
}

// Calls `callback` with each process's folder and id.
template <typename Callback>
void forEachProcess(const Path& processes, Callback callback) {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(processes, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string number = entry->path().filename().string();
    if (isNumber(number)) callback(entry->path(), static_cast<std::uint32_t>(std::stoul(number)));
  }
}

Environment environmentIn(const Path& process) {
  return textsIn(process / "environ", std::string_view("\0", 1));
}

// Chromium overwrites its environment with zeros when it sets its process title.
bool isOverwritten(const Environment& environment) { return environment.front().empty(); }

// The environment of the first crash reporter that started after the browser. A browser
// starts its own at once, with its own environment, which the reporter does not
// overwrite. Empty if it has none.
Environment environmentOfReporter(const Path& processes, const Path& browser) {
  const std::uint64_t earliest = startOf(browser);
  std::uint64_t latest = std::numeric_limits<std::uint64_t>::max();
  Environment found;
  forEachProcess(processes, [&](const Path& process, std::uint32_t) {
    if (nameOfProcess(process) != kCrashReporter) return;
    const std::uint64_t start = startOf(process);
    if (start < earliest || start >= latest) return;
    Environment environment = environmentIn(process);
    if (environment.empty()) return;
    latest = start;
    found = std::move(environment);
  });
  return found;
}

}  // namespace

std::vector<BrowserProcess> browserProcesses(const Path& processes, const std::string& sessionBus) {
  std::vector<BrowserProcess> found;
  forEachProcess(processes, [&](const Path& process, std::uint32_t id) {
    const std::optional<BrowserKind> kind = kindOf(process);
    if (!kind) return;
    // Only processes of this user reveal their environment.
    Environment environment = environmentIn(process);
    if (environment.empty()) return;
    if (isOverwritten(environment)) environment = environmentOfReporter(processes, process);
    // A user normally has one session, so a browser whose environment is unknown counts
    // as part of this one.
    if (!environment.empty() && !isOfSession(environment, sessionBus)) return;
    const bool isVetoed = std::ranges::any_of(environment, [](const std::string& variable) {
      return std::ranges::find(kSwitches, variable) != std::end(kSwitches);
    });
    found.push_back({id, *kind, isVetoed});
  });
  return found;
}

}  // namespace quorrix
