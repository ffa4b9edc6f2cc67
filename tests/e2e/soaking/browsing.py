"""Building blocks of the soak's steps: act, find out what the user sees, state what is expected."""

import random
import time

from soaking.hands import Hands
from soaking.model import Entry, Model, Tab, Window
from soaking.places import Places
from soaking.site import SoakSite, title_at
from soaking.tally import Tally
from support.waiting import TimedOut, holds_for, wait_until

# A host with one dot, which is not recorded.
HOME = "http://home.test/"

# The longest wait for the browser, which is slow on a busy machine.
SLOW_SECONDS = 15

# If the browser has not requested a typed address after this time, it never will.
ANSWER_SECONDS = 4

# Longer than an address without a new document must last to count as a visit.
STANDING_SECONDS = 1.2

# Long enough for the program to notice a page.
LOOK_SECONDS = 0.6


class NotCarriedOut(AssertionError):
    """The browser does not show what the step should lead to."""


class Browsing(Places):
    """Combines the browser, the site, the model of what is shown, and the tally."""

    def __init__(self, browser: Hands, site: SoakSite, quorrix, model: Model, tally: Tally,
                 random_numbers: random.Random, pages=0):
        super().__init__(pages)
        self.browser = browser
        self.site = site
        self.quorrix = quorrix
        self.model = model
        self.tally = tally
        self.random = random_numbers
        self.since = 0.0

    # --- the present state -----------------------------------------------------------------------

    @property
    def window(self):
        return self.model.window

    @property
    def tab(self):
        return self.model.window.tab

    @property
    def entry(self):
        return self.model.window.entry

    def is_on_a_page(self):
        return self.entry.url is not None

    def title(self):
        return self.browser.window.title

    def shows(self, url):
        return self.title().startswith(title_at(url) + " ")

    # --- acting ----------------------------------------------------------------------------------

    def begin(self):
        """Marks the start of the next visit. Earlier writes do not count for it."""
        self.since = time.time()

    def type_url(self, url):
        """Types a new address and waits until the browser requests it."""
        def ask():
            self.browser.type_address(url)
            self.begin()
            # Delete removes the completion that the browser has appended from its history.
            self.browser.press_key("Delete", "Return")
            try:
                return wait_until(lambda: self.site.times_asked(url), url, ANSWER_SECONDS)
            except TimedOut:
                return False

        # A tab that is still opening may discard the typed text; a user then types it again.
        self.wait(ask, f"the browser to ask for {url}")

    def click(self, cell, **options):
        self.begin()
        self.browser.click_cell(cell, **options)

    def press(self, *keys):
        self.begin()
        self.browser.press_key(*keys)

    # --- waiting ---------------------------------------------------------------------------------

    def wait(self, condition, what, seconds=SLOW_SECONDS):
        return wait_until(condition, lambda: f"{what}; the title is {self.title()!r}", seconds)

    def wait_for_asked(self, url, before=0):
        self.wait(lambda: self.site.times_asked(url) > before, f"the site to be asked for {url}")

    def wait_for_page(self, *urls, what=("show",)):
        """Waits until both the page and the window's title indicate that the page is shown."""
        beacon = self.wait(lambda: self.site.heard(self.since, what, urls), f"{what} of {urls}")
        self.wait(lambda: self.shows(beacon.at), f"the title of {beacon.at}")
        return beacon

    def stay(self, seconds):
        """Waits. The tally counts any unexpected write during this time as a fault."""
        holds_for(seconds, lambda: self.tally.absorb() or True, "the page is looked at")

    # --- expecting -------------------------------------------------------------------------------

    def load_into_tab(self, url, kind="new page"):
        """Waits for the page of a new history entry and expects its visit."""
        beacon = self.wait_for_page(url)
        self.tab.go_to(Entry(url, beacon.base))
        self.expect_presented(kind, beacon.time)

    def move_in_tab(self, what):
        """Waits until the document has a new address. Returns the new entry and the time."""
        beacon = self.wait(lambda: self.site.heard(self.since, (what,)), f"{what} of the page")
        self.wait(lambda: self.shows(beacon.at), f"the title of {beacon.at}")
        return Entry(beacon.at, beacon.base), beacon.time

    def expect_presented(self, kind, committed):
        address = self.model.present()
        if address:
            self.tally.expect(kind, address, self.since, committed)
        elif self.model.presented is None:
            # This page is not recorded, but a later return from it counts as a visit if the program
            # noticed it. So stay long enough for that.
            self.stay(LOOK_SECONDS)

    def expect_chosen(self, kind):
        """For a page that was loaded before. A page does not report when it comes to the front, and
        a title is noticed late, so the time runs from the key press or click."""
        self.expect_presented(kind, self.since)

    def expect_moved(self, kind, committed):
        """For a new address without a new document. The address counts as a visit after one
        second. The page always stays for STANDING_SECONDS."""
        self.expect_presented(kind, committed)
        self.wait(self.tally.absorb, "the record")
        self.stay(max(0.0, committed + STANDING_SECONDS - time.time()))

    def expect_again(self, kind, committed):
        """Expects a visit after a reload."""
        if not self.window.private:
            self.tally.expect(kind, self.entry.address, self.since, committed)

    def expect_nothing(self, seconds=LOOK_SECONDS):
        self.stay(seconds)

    # --- windows and tabs ------------------------------------------------------------------------

    def see_which_tab(self):
        """Call this after another tab has come to the front. The title tells which one."""
        before = self.tab

        def tab_shown():
            for tab in self.window.tabs:
                if tab is not before and tab.entry.url and self.shows(tab.entry.url):
                    return tab
            return None

        self.window.tab = self.wait(tab_shown, "another tab's title")
        self.expect_chosen("tab chosen")

    def use_window(self, window):
        self.begin()
        self.model.use(window)
        self.browser.window = window.handle
        self.browser.use()
        self.expect_chosen("window chosen")

    def add_window(self, handle, tab, private=False):
        self.model.windows.insert(0, Window(handle, [tab], private))
        self.browser.window = handle

    def start(self):
        """Starts the browser with one window on a page that is not recorded."""
        self.browser.start(HOME)
        self.model.windows = [Window(self.browser.window, [Tab([Entry(None)])])]
        self.model.presented = self.model.presented_before = None
        self.model.last_closed_in = None
        # A browser that has just started may lose clicks, whereas typing is repeated if necessary.
        self.pages += 1
        ready = f"{HOME}{self.pages}"
        self.type_url(ready)
        self.wait_for_page(ready)
