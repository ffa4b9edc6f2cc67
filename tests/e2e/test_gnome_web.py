"""The scenarios for every browser, with the real GNOME Web, and those for GNOME Web only."""

import unittest

from support.gnome_web import GnomeWeb
from support.kept import KeptBrowserTest
from support.scenario import LONG_ENOUGH
from support.waiting import holds_for
from visits import VisitScenarios

LINKING = "www.garden.example/linking.html"
NEXT = "news.harbour.example/next.html"
BEFORE = "www.garden.example/before.html"
AFTER = "www.garden.example/after.html"


class GnomeWebVisits(VisitScenarios, KeptBrowserTest):
    browser_class = GnomeWeb

    def test_following_a_link_records_its_page(self):
        browser = self.given_a_browser(GnomeWeb)
        self.site.given_a_page(f"http://{LINKING}", body=(
            f"<a href='http://{NEXT}' style='display: block; height: 1000px'>next</a>"))
        self.given_tracking()
        browser.visit(f"http://{LINKING}")
        self.wait_for_record(LINKING)
        writes = self.watch_writes()
        browser.use()
        browser.window.click(*browser.empty_place)
        browser.wait_until_it_shows(f"http://{NEXT}")
        self.wait_for_record(NEXT)
        self.assert_nothing_is_written(writes, "one visit is one record written")
        self.assertEqual(1, writes.now())
        self.assert_sites((LINKING, "N"), (NEXT, "N"))

    def test_a_browser_with_nothing_but_a_private_window_is_not_recorded(self):
        """Private windows run in a separate process, so the ordinary one can start and end."""
        incognito = self.given_no_browser_yet(GnomeWeb)
        self.given_tracking()
        incognito.start_private("http://www.secret.example/alone.html")
        # A window counts as private permanently after three seconds without an ordinary process.
        self.assert_nothing_is_recorded_but(seconds=LONG_ENOUGH + 3)
        ordinary = self.given_a_browser(GnomeWeb)
        self.assert_tracking_goes_on(ordinary, f"http://{BEFORE}", BEFORE)
        incognito.visit("http://www.secret.example/beside.html")
        self.assert_nothing_is_recorded_but(BEFORE)
        ordinary.close()
        incognito.visit("http://www.secret.example/left-behind.html")
        self.assert_nothing_is_recorded_but(BEFORE)
        again = self.given_a_browser(GnomeWeb)
        self.assert_tracking_goes_on(again, f"http://{AFTER}", AFTER)
        incognito.visit("http://www.secret.example/last.html")
        self.assert_nothing_is_recorded_but(BEFORE, AFTER)

    def assert_nothing_is_recorded_but(self, *addresses, seconds=LONG_ENOUGH):
        expected = [(address, "N") for address in addresses]
        holds_for(seconds, lambda: self.quorrix.addresses_and_flags() == expected,
                  lambda: f"only {expected} is recorded; there are "
                          f"{self.quorrix.addresses_and_flags()}")


if __name__ == "__main__":
    unittest.main()
