// What the accessible name of a browser's top-level window says about the window,
// in every language of the browser. Page titles are chosen by pages and profile
// names by users, so a name counts as ordinary only when no private window of any
// language can have it, whatever its page is called.
#pragma once

#include <string_view>

#include "platform/browsers/browser_kind.h"

namespace quorrix {

enum class TitleKind {
  // An ordinary window. The name cannot show one thing: an app window of Chromium
  // (`--app`) is named by the page's title alone, without the browser's name, so a page
  // titled "News - Chromium" looks like an ordinary window. Such a window is not private:
  // private ones say so after any title.
  Ordinary,
  // The browser's name alone: an ordinary window of Firefox on a page without a title,
  // but also a private window for up to a second while it opens. Other marks have to
  // decide.
  BrowserNameAlone,
  // Private, guest or isolated, or a name of unknown form. A profile that a user has
  // named like a private window ("Guest", "Incognito") counts here too.
  NotOrdinary,
};

// For all browsers but GNOME Web, whose names do not show the kind: they are never
// ordinary here. `family` is determined by the program that owns the window, never by the
// name. The name is UTF-8. It must be the accessible name: the title of an X11 window has
// nothing after Chromium's name, not even "(Incognito)".
[[nodiscard]] TitleKind titleKind(BrowserKind family, std::string_view accessibleName);

// Whether the name ends with a closing bracket of any script. Directional marks and blanks
// after it do not count.
[[nodiscard]] bool endsInBrackets(std::string_view accessibleName);

}  // namespace quorrix
