#include "main_window/unreadable_browser_text.h"

#include <QStringBuilder>
#include <QStringList>

namespace quorrix {
namespace {

using Reason = UnreadableBrowser::Reason;

constexpr int kLongestName = 30;  // characters

// %1 is the name of the browser, or all the names.
struct Sentences {
  Reason reason;
  const char* ofOne;
  const char* ofSeveral;
};

// The lines are shown in this order.
constexpr Sentences kSentences[] = {
    {Reason::StartedTooEarly, "Close %1 and start it again to have its pages recorded.",
     "Close %1 and start them again to have their pages recorded."},
    {Reason::AccessibilityOff,
     "A setting or an environment variable switches accessibility off in %1. Remove it and start "
     "%1 again to have its pages recorded.",
     "A setting or an environment variable switches accessibility off in %1. Remove it and start "
     "them again to have their pages recorded."},
    {Reason::NoBus,
     "The accessibility service of the desktop does not answer. Log out and log in again to have "
     "the pages of %1 recorded.",
     "The accessibility service of the desktop does not answer. Log out and log in again to have "
     "the pages of %1 recorded."},
    {Reason::UnknownKind,
     "Quorrix cannot tell whether a window of %1 is private. Close that window and open a new one "
     "to have its pages recorded.",
     "Quorrix cannot tell whether windows of %1 are private. Close those windows and open new ones "
     "to have their pages recorded."},
};

// On one line and short enough for a narrow window, whatever the browser calls itself.
QString shownName(const std::string& name) {
  QString text = QString::fromStdString(name).simplified();
  if (text.size() > kLongestName) text = text.left(kLongestName - 1) % QChar(0x2026);
  return text;
}

QStringList namesOf(const std::vector<UnreadableBrowser>& browsers, Reason reason) {
  QStringList names;
  for (const UnreadableBrowser& browser : browsers) {
    if (browser.reason == reason) names << shownName(browser.name);
  }
  names.removeDuplicates();
  return names;
}

// "A", "A and B", "A, B and C".
QString joined(QStringList names) {
  QString last = names.takeLast();
  if (names.isEmpty()) return last;
  return names.join(QStringLiteral(", ")) % QStringLiteral(" and ") % last;
}

}  // namespace

QString unreadableBrowserText(const std::vector<UnreadableBrowser>& browsers) {
  QStringList lines;
  for (const auto& [reason, ofOne, ofSeveral] : kSentences) {
    const QStringList names = namesOf(browsers, reason);
    if (names.isEmpty()) continue;
    lines << QString::fromLatin1(names.size() == 1 ? ofOne : ofSeveral).arg(joined(names));
  }
  return lines.join(QLatin1Char('\n'));
}

}  // namespace quorrix
