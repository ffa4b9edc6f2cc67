"""Browser control for the soak: profiles with bookmarks, and single key presses and clicks.

The methods that press or click return immediately; the steps wait for the effect.
"""

import html
import json
import os

from soaking.site import place_of_cell
from support.browsers import Chromium, Firefox
from support.waiting import wait_until

BOOKMARKS = [f"http://www.shelf{number}.example/kept" for number in range(3)]
SLOW_BOOKMARK = "http://www.shelf0.example/slow"
SHELF = [*BOOKMARKS, SLOW_BOOKMARK]


class Hands:
    """What both browsers have in common, in addition to `support.browsers`."""

    page_top = 0  # the offset of the page from the top of the window
    bookmark_places = ()  # centres of the bookmarks on their bar
    first_tab = (150, 21)
    new_private_window = ""
    move_tab_keys = ()  # in the menu of a tab, move it to a new window
    reader = None  # the key for the reading view

    def press_key(self, *keys):
        self.screen.press(*keys)

    def click_bookmark(self, url):
        self.window.click(*self.bookmark_places[SHELF.index(url)])

    def click_cell(self, cell, top=None, held=None):
        x, y = place_of_cell(cell)
        y += self.page_top if top is None else top
        if not held:
            self.window.click(x, y)
            return
        self.screen.command("mousemove", "--window", str(self.window.number), str(x), str(y),
                            "keydown", held, "click", "1", "keyup", held)

    def move_first_tab_to_a_new_window(self):
        self.window.click(*self.first_tab, button=3)
        self.press_key(*self.move_tab_keys)

    def window_titles(self):
        return {window.number: window.title
                for window in self.screen.windows_of(self.family()) if window.title}

    def new_window_since(self, before, what):
        """Waits for a new active window. `before` is an earlier result of `window_titles`."""
        def new_window():
            for window in self.screen.windows_of(self.family()):
                if window.number not in before and window.is_active():
                    return window
            return None

        return wait_until(new_window, what, 10)


class SoakFirefox(Hands, Firefox):
    page_top = 114
    bookmark_places = tuple((95 + 171 * number, 97) for number in range(len(SHELF)))
    new_private_window = "ctrl+shift+p"
    reader = "ctrl+alt+r"
    move_tab_keys = ("v", "w")

    def prepare_profile(self):
        super().prepare_profile()
        links = "".join(f"<DT><A HREF='{html.escape(url)}'>{url[-20:]}</A>\n" for url in SHELF)
        with open(os.path.join(self.profile, "bookmarks.html"), "w", encoding="ascii") as file:
            file.write("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n"
                       "<DT><H3 PERSONAL_TOOLBAR_FOLDER='true'>Bar</H3>\n"
                       f"<DL><p>\n{links}</DL><p>\n</DL>\n")

    def _preferences(self):
        return super()._preferences() | {
            "browser.places.importBookmarksHTML": "true",
            "browser.toolbars.bookmarks.visibility": '"always"',
            "browser.toolbars.bookmarks.showOtherBookmarks": "false",
            # Prevents panels that would consume the next click.
            "browser.download.alwaysOpenPanel": "false",
            "browser.download.panel.shown": "true",
        }


class SoakChromium(Hands, Chromium):
    page_top = 121
    bookmark_places = tuple((137 + 154 * number, 99) for number in range(len(SHELF)))
    new_private_window = "ctrl+shift+n"
    # The fourth entry of the menu.
    move_tab_keys = ("Down", "Down", "Down", "Down", "Return")

    def prepare_profile(self):
        super().prepare_profile()
        folder = os.path.join(self.profile, "Default")
        os.mkdir(folder, 0o700)
        bar = [{"type": "url", "id": str(number), "name": url[-20:], "url": url}
               for number, url in enumerate(SHELF, start=10)]
        roots = {name: {"type": "folder", "id": str(number), "name": name,
                        "children": bar if name == "bookmark_bar" else []}
                 for number, name in enumerate(("bookmark_bar", "other", "synced"), start=1)}
        with open(os.path.join(folder, "Bookmarks"), "w", encoding="ascii") as file:
            json.dump({"version": 1, "roots": roots}, file)
        with open(os.path.join(folder, "Preferences"), "w", encoding="ascii") as file:
            # Without the list of downloads, which opens over the page.
            json.dump({"bookmark_bar": {"show_on_all_tabs": True},
                       "download_bubble": {"partial_view_enabled": False}}, file)
