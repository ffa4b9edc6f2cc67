"""Browsers that are Wayland clients, with the program on the same desktop: through XWayland, or as
a Wayland client if there is no XWayland."""

import subprocess
import unittest

from support.scenario import HOME, LONG_ENOUGH, QuorrixTest
from support.waiting import holds_for
from support.wayland import (WaylandChromium, WaylandFirefox, WaylandQuorrix, WaylandSession,
                             XWaylandSession)

PUBLIC = "www.garden.example/public.html"
AFTER = "www.garden.example/after.html"
SECRETS = ("http://www.secret.example/first.html", "http://www.secret.example/second.html")


class WaylandTest(QuorrixTest):
    quorrix_class = WaylandQuorrix

    def setUp(self):
        super().setUp()
        self.given_a_starting_program()

    def see(self, browser, address):
        browser.visit(f"http://{address}")
        # visit() returns when the browser asks for the page, some time before it shows the page.
        self.wait_for_record(address, seconds=5)


class BesideXWayland(WaylandTest):
    session_class = XWaylandSession

    def assert_program_is_client_of_the_right_display(self):
        self.assertTrue(self.quorrix.is_client_of("xcb"))
        self.assertFalse(self.quorrix.is_client_of("wayland"))
        self.assertIn('"Quorrix"', self.x_windows())

    def assert_is_wayland_client(self, browser):
        self.assertNotIn(browser.name, self.x_windows())

    def x_windows(self):
        return subprocess.run(["xwininfo", "-root", "-tree"], env=self.session.environment,
                              check=True, timeout=20, capture_output=True, text=True).stdout


class WithoutXWayland(WaylandTest):
    session_class = WaylandSession

    def assert_program_is_client_of_the_right_display(self):
        self.assertTrue(self.quorrix.is_client_of("wayland"))
        self.assertFalse(self.quorrix.is_client_of("xcb"))

    def assert_is_wayland_client(self, browser):
        """There is no other display that it could use."""


class WaylandScenarios:
    browser_class = None

    def test_every_page_is_recorded_once_and_no_private_window_beside_it(self):
        browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        writes = self.watch_writes()
        addresses = ("www.garden.example/one.html", "news.harbour.example/two/three.html")
        for count, address in enumerate(addresses, start=1):
            self.see(browser, address)
            self.assert_nothing_is_written(writes, "one visit is one record written")
            self.assertEqual(count, writes.now())
        self.assert_program_is_client_of_the_right_display()
        self.assert_is_wayland_client(browser)

        for url in SECRETS:
            browser.open_private_window(url)
            self.assert_nothing_is_written(writes, "a private window is not recorded")
        self.see(browser, AFTER)
        self.assert_sites(*((address, "N") for address in (*addresses, AFTER)))

    def test_a_browser_with_nothing_but_private_windows_is_not_recorded(self):
        browser = self.given_no_browser_yet(self.browser_class)
        self.given_tracking()
        browser.start_private(SECRETS[0])
        browser.open_private_window(SECRETS[1])
        holds_for(LONG_ENOUGH, lambda: self.quorrix.records() == [],
                  "a private window is not recorded")
        browser.open_window(HOME)
        self.see(browser, PUBLIC)
        self.assert_sites((PUBLIC, "N"))


class FirefoxBesideXWayland(WaylandScenarios, BesideXWayland):
    browser_class = WaylandFirefox


class ChromiumBesideXWayland(WaylandScenarios, BesideXWayland):
    browser_class = WaylandChromium


class FirefoxWithoutXWayland(WaylandScenarios, WithoutXWayland):
    browser_class = WaylandFirefox


class ChromiumWithoutXWayland(WaylandScenarios, WithoutXWayland):
    browser_class = WaylandChromium


class BrowsersTogether(BesideXWayland):
    def test_only_the_browser_that_was_used_last_is_read(self):
        self.given_tracking()
        firefox = self.given_a_browser(WaylandFirefox)
        self.see(firefox, "www.garden.example/firefox-alone.html")
        chromium = self.given_a_browser(WaylandChromium)
        self.see(chromium, "www.garden.example/chromium-in-front.html")
        writes = self.watch_writes()
        firefox.visit("http://www.garden.example/firefox-behind.html")
        self.assert_nothing_is_written(writes, "the one behind is not read")

        # A new window takes the focus.
        firefox.open_window("http://www.garden.example/firefox-in-front.html")
        self.wait_for_record("www.garden.example/firefox-in-front.html", seconds=5)
        writes = self.watch_writes()
        chromium.visit("http://www.garden.example/chromium-behind.html")
        self.assert_nothing_is_written(writes, "the one behind is not read")
        self.assert_sites(("www.garden.example/firefox-alone.html", "N"),
                          ("www.garden.example/chromium-in-front.html", "N"),
                          ("www.garden.example/firefox-in-front.html", "N"))


class ProgramWithoutXWayland(WithoutXWayland):
    def test_the_program_starts_tracks_stops_and_ends(self):
        browser = self.given_a_browser(WaylandFirefox)
        self.given_tracking()
        self.assert_program_is_client_of_the_right_display()
        self.see(browser, PUBLIC)
        self.quorrix.wait_for_tree("www", "www.garden.example", "public.html")

        self.quorrix.stop_tracking()
        writes = self.watch_writes()
        browser.visit("http://www.garden.example/untracked.html")
        self.assert_nothing_is_written(writes, "nothing is recorded while tracking is off")
        self.quorrix.start_tracking()
        self.see(browser, AFTER)

        self.quorrix.close_window()
        self.assertEqual(0, self.quorrix.exit_status())
        self.assertIn((PUBLIC, "N"), self.quorrix.addresses_and_flags())
        self.assertIn((AFTER, "N"), self.quorrix.addresses_and_flags())


if __name__ == "__main__":
    unittest.main()
