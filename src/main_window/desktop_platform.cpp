#include "main_window/desktop_platform.h"

#include <utility>

namespace quorrix {

std::string preferredPlatform(const DesktopEnvironment& environment) {
  const bool mayChoose = !environment.hasChosenPlatform && environment.hasWaylandDisplay;
  return mayChoose && environment.hasX11Display ? "xcb;wayland" : "";
}

Qt::LayoutDirection desktopDirection(const QStringList& languages) {
  return languages.isEmpty() ? Qt::LeftToRight : QLocale(languages.first()).textDirection();
}

QLocale localeOfDates() {
#ifndef _WIN32
  for (const char* const variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const QString name = qEnvironmentVariable(variable);
    if (!name.isEmpty()) return QLocale(name);
  }
#endif
  return QLocale::system();
}

// The platform goes after the program's name and before the user's own arguments, because
// Qt uses the last platform given.
DesktopArguments::DesktopArguments(int count, char** values, std::string platform)
    : platform_(std::move(platform)), values_(values, values + count) {
  if (!platform_.empty() && count > 0) {
    values_.insert(values_.begin() + 1, {option_.data(), platform_.data()});
  }
  count_ = static_cast<int>(values_.size());
  values_.push_back(nullptr);
}

}  // namespace quorrix
