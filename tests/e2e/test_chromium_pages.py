"""The scenarios for every kind of page, with the real Chromium."""

import unittest

from page_kinds import PageKindScenarios
from soaking.hands import BOOKMARKS, SLOW_BOOKMARK, SoakChromium
from support.accessibility import AccessibilityBus
from support.browsers import Chromium
from support.scenario import QuorrixTest
from support.waiting import wait_until

FIRST = "www.garden.example/first.html"
SECOND = "news.harbour.example/second.html"


class ChromiumPages(PageKindScenarios, QuorrixTest):
    browser_class = Chromium


class SidePanelOfChromium(QuorrixTest):
    """While a side panel is open, the window exposes its document on the bus, not the page's."""

    def test_pages_beside_it_are_recorded(self):
        self.quorrix.start()
        browser = self.given_a_browser(Chromium)
        self.site.given_a_page(
            f"http://{FIRST}",
            script="onkeydown = event => { if (event.key == 'p') {"
                   " history.pushState({}, '', '/pushed.html');"
                   " document.title = 'Page www.garden.example/pushed.html'; } };")
        self.given_tracking()
        browser.visit(f"http://{FIRST}")
        self.wait_for_record(FIRST)
        writes = self.watch_writes()
        self.open_reading_mode(browser)
        self.assert_nothing_is_written(writes, "a panel is no page")

        browser.press("p")
        browser.wait_until_it_shows("http://www.garden.example/pushed.html")
        self.wait_for_record("www.garden.example/pushed.html", seconds=2.5)
        browser.open_tab(f"http://{SECOND}")
        self.wait_for_record(SECOND)
        self.wait_for_the_next_second("www.garden.example/pushed.html")
        writes = self.watch_writes()
        browser.choose_next_tab("http://www.garden.example/pushed.html")
        self.wait_for_write(writes, 1)
        self.assert_nothing_is_written(writes, "one choice is one record written")
        browser.choose_next_tab(f"http://{SECOND}")
        self.wait_for_write(writes, 2)
        self.assert_nothing_is_written(writes, "one choice is one record written")
        self.assert_sites((FIRST, "N"), ("www.garden.example/pushed.html", "N"), (SECOND, "N"))

    def open_reading_mode(self, browser):
        """Opens the reading mode, and waits until the window exposes it on the bus."""
        bus = AccessibilityBus(self.session)
        self.addCleanup(bus.close)
        browser.use()
        self.session.screen.press("alt+shift+r")

        def is_named():
            frames = bus.application_of(browser.process.pid).children()
            return any(target.name == "Reading mode"
                       for frame in frames for target in frame.embedded())

        wait_until(is_named, "the reading mode")


class BookmarksOfChromium(QuorrixTest):
    def test_a_slow_one_of_the_same_host_that_is_stopped_is_not_recorded(self):
        slow = self.site.given_a_slow_page(SLOW_BOOKMARK)
        self.quorrix.start()
        browser = self.given_a_browser(SoakChromium, BOOKMARKS[0])
        self.given_tracking()
        self.wait_for_record(BOOKMARKS[0].removeprefix("http://"))
        writes = self.watch_writes()
        # The address bar already shows the bookmark's address while the old page is still shown.
        browser.click_bookmark(SLOW_BOOKMARK)
        self.assertTrue(slow.asked.wait(5))
        self.assert_nothing_is_written(writes, "nothing of it has been shown yet")
        browser.press("Escape")
        self.assert_nothing_is_written(writes, "a page that never came is not recorded")
        slow.release()
        self.assert_nothing_is_written(writes, "a load that was stopped stays stopped")
        browser.click_bookmark(BOOKMARKS[1])
        self.wait_for_record(BOOKMARKS[1].removeprefix("http://"))
        self.assert_sites((BOOKMARKS[0].removeprefix("http://"), "N"),
                          (BOOKMARKS[1].removeprefix("http://"), "N"))


if __name__ == "__main__":
    unittest.main()
