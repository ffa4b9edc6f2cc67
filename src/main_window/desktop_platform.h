// What the program takes from the desktop before its first window: which of Qt's
// platforms to run on, the direction of the layout, and the locale of dates.
#pragma once

#include <QLocale>
#include <QStringList>
#include <Qt>
#include <string>
#include <vector>

namespace quorrix {

struct DesktopEnvironment {
  bool hasChosenPlatform;  // the user set one
  bool hasWaylandDisplay;
  bool hasX11Display;
};

// Qt's name of the platform to run on, or empty for Qt's own choice. On Wayland a program
// cannot place its own windows, so XWayland comes first if it is available.
[[nodiscard]] std::string preferredPlatform(const DesktopEnvironment& environment);

// The direction of the desktop's first language, such as "ar-EG". Qt would take it from a
// translation, but the program has no translations.
[[nodiscard]] Qt::LayoutDirection desktopDirection(const QStringList& languages);

// The locale in which the user writes dates. On Linux, LC_TIME counts alone, and not the
// digits of another category.
[[nodiscard]] QLocale localeOfDates();

// The program's arguments for Qt, including the platform. The platform is not set as an
// environment variable, because every program that this one starts, such as the browser,
// would inherit it. A platform that the user gave as an argument takes precedence.
class DesktopArguments {
 public:
  // `platform` may be empty. `values` has `count` arguments and must outlive this object.
  DesktopArguments(int count, char** values, std::string platform);
  DesktopArguments(const DesktopArguments&) = delete;
  DesktopArguments& operator=(const DesktopArguments&) = delete;

  // Qt removes its own arguments from both, and needs them until it shuts down.
  [[nodiscard]] int& count() { return count_; }
  [[nodiscard]] char** values() { return values_.data(); }

 private:
  std::string option_ = "-platform";
  std::string platform_;
  std::vector<char*> values_;  // terminated by a null
  int count_;
};

}  // namespace quorrix
