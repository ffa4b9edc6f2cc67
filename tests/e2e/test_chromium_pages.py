"""The scenarios of every kind of page, with the real Chromium."""

import unittest

from page_kinds import PageKindScenarios
from soaking.hands import BOOKMARKS, SLOW_BOOKMARK, SoakChromium
from support.browsers import Chromium
from support.scenario import QuorrixTest


class ChromiumPages(PageKindScenarios, QuorrixTest):
    browser_class = Chromium


class BookmarksOfChromium(QuorrixTest):
    def test_a_slow_one_of_the_same_host_that_is_stopped_is_not_recorded(self):
        slow = self.site.given_a_slow_page(SLOW_BOOKMARK)
        self.quorrix.start()
        browser = self.given_a_browser(SoakChromium, BOOKMARKS[0])
        self.given_tracking()
        self.wait_for_record(BOOKMARKS[0].removeprefix("http://"))
        writes = self.watch_writes()
        # The address bar shows the bookmark's address while the page is still the other one.
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
