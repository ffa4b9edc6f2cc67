"""Private and ordinary windows in every order. The private ones, in front and behind, reload
themselves and open popups. They are never recorded, and the ordinary ones still are."""

import unittest

from support.accessibility import AccessibilityBus
from support.browser_variants import NEVER_REMEMBERS, VIEW_TAKEN_AWAY, firefox_with
from support.browsers import Chromium, Firefox
from support.restless_pages import RestlessPages
from support.scenario import HOME, LONG_ENOUGH, QuorrixTest
from support.waiting import holds_for

VIEW_BUTTON = "firefox-view-button"


class PrivateWindowTest(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.quorrix.start()
        self.browser = None
        self.recorded = []
        self.places = 0
        self.private_windows = []  # the popup and the window that opened it
        self.private_pages = []

    # --- given -----------------------------------------------------------------------------------

    def given_restless_pages(self):
        self.places += 1
        return RestlessPages(self.site, f"www.secret.example/place-{self.places}")

    def given_a_page_with_a_popup(self, url, popup):
        self.site.given_a_page(url, script=(
            "onkeydown = event => { if (event.key == 'p')"
            f" window.open('{popup}', 'popup', 'width=600,height=400'); }};"))

    def given_private_windows(self, open_window, **options):
        """Opens a private window and a popup of it, and then uses the window again. Both show pages
        that keep reloading."""
        self.private_pages = [self.given_restless_pages(), self.given_restless_pages()]
        of_window, of_popup = self.private_pages
        opener = f"http://www.secret.example/opener-{self.places}.html"
        self.given_a_page_with_a_popup(opener, of_popup.first)
        window = open_window(opener, **options)
        popup = self.browser.open_popup("p", shows=of_popup.last)
        of_popup.wait_for_reloads()
        self.browser.window = window
        self.browser.visit(of_window.first, shows=of_window.last)
        self.private_windows = [popup, window]

    # --- steps -----------------------------------------------------------------------------------

    def let_private_windows_reload(self):
        for pages in self.private_pages:
            pages.wait_for_reloads()

    def close_private_windows(self):
        for window in self.private_windows:
            self.browser.window = window
            self.browser.close_window()

    def see(self, address):
        self.browser.visit(f"http://{address}")
        self.wait_for_record(address)
        self.recorded.append((address, "N"))
        self.assert_sites(*self.recorded)

    def see_popup(self, address):
        opener = self.browser.window
        self.given_a_page_with_a_popup(f"http://{address}/opener.html",
                                       f"http://{address}/popup.html")
        self.see(f"{address}/opener.html")
        self.browser.open_popup("p", shows=f"http://{address}/popup.html")
        self.wait_for_record(f"{address}/popup.html", seconds=2)
        self.recorded.append((f"{address}/popup.html", "N"))
        self.assert_sites(*self.recorded)
        writes = self.watch_writes()
        self.browser.close_window()
        self.browser.window = opener
        self.wait_for_write(writes, 1, seconds=2)  # the opener's page is shown again

    def assert_nothing_is_recorded(self):
        holds_for(LONG_ENOUGH, lambda: self.quorrix.records() == [],
                  lambda: f"no record; there are {self.quorrix.addresses_and_flags()}")


class PrivateWindowScenarios:
    browser_class = None
    private_options = ()
    ordinary_option = None

    def test_private_windows_that_open_after_an_ordinary_one(self):
        self.browser = self.given_a_browser(self.browser_class)
        self.given_tracking()
        self.see("www.garden.example/first.html")
        self.see_popup("www.garden.example/with-popup")
        ordinary = self.browser.window
        for option in self.private_options:
            with self.subTest(option):
                self.assert_nothing_of_private_windows_is_recorded(option, ordinary)

    def assert_nothing_of_private_windows_is_recorded(self, option, ordinary):
        place = "www.garden.example/" + option.strip("-")
        writes = self.watch_writes()
        self.given_private_windows(self.browser.open_private_window, option=option)
        self.let_private_windows_reload()
        ordinary.use()
        self.let_private_windows_reload()
        self.assert_nothing_is_written(writes, "private windows are not recorded")
        self.assertEqual(0, writes.now())

        self.browser.window = ordinary
        self.see(f"{place}/in-front.html")
        self.let_private_windows_reload()
        self.close_private_windows()
        self.given_private_windows(self.browser.open_private_window, option=option)
        self.let_private_windows_reload()
        self.close_private_windows()
        self.browser.window = ordinary
        self.see(f"{place}/alone.html")
        self.assertEqual(2, writes.now())

    def test_private_windows_that_open_before_an_ordinary_one(self):
        self.given_tracking()
        for option in self.private_options:
            with self.subTest(option):
                self.browser = self.browser_class(self.session, self.site)
                self.addCleanup(self.browser.close)
                self.assert_nothing_is_recorded_before_the_ordinary_one(option)
                self.browser.close()

    def assert_nothing_is_recorded_before_the_ordinary_one(self, option):
        place = "www.garden.example/" + option.strip("-")
        writes = self.watch_writes()
        self.given_private_windows(self.browser.start_private, option=option)
        self.let_private_windows_reload()
        self.assert_nothing_is_written(writes, "private windows are not recorded")
        self.assertEqual(0, writes.now())

        ordinary = self.browser.open_window(HOME, self.ordinary_option)
        self.see(f"{place}/in-front.html")
        self.let_private_windows_reload()
        for window in self.private_windows:
            window.use()
            self.let_private_windows_reload()
        self.assertEqual(1, writes.now())
        self.browser.window = ordinary
        self.see(f"{place}/again.html")
        self.assertEqual(2, writes.now())


class FirefoxPrivateWindows(PrivateWindowScenarios, PrivateWindowTest):
    browser_class = Firefox
    private_options = ("--private-window",)

    def test_a_firefox_that_never_remembers_history(self):
        self.given_tracking()
        self.given_a_firefox_of_which_nothing_is_recorded(firefox_with(NEVER_REMEMBERS))
        self.browser = self.given_a_browser(Firefox)
        self.see("www.garden.example/remembered.html")
        self.assertIn(VIEW_BUTTON, self.ids_on_tool_bars())

    def test_a_firefox_without_the_button_that_private_windows_lack(self):
        self.given_tracking()
        self.given_a_firefox_of_which_nothing_is_recorded(
            firefox_with(NEVER_REMEMBERS, VIEW_TAKEN_AWAY))
        self.browser = self.given_a_browser(firefox_with(VIEW_TAKEN_AWAY))
        self.see("www.garden.example/remembered.html")
        self.see_popup("www.garden.example/with-popup")
        ids = self.ids_on_tool_bars()
        self.assertIn("back-button", ids)
        self.assertNotIn(VIEW_BUTTON, ids)

    def test_a_firefox_that_is_started_with_the_option_for_it(self):
        self.given_tracking()
        for kind in (Firefox, firefox_with(VIEW_TAKEN_AWAY)):
            self.given_a_firefox_of_which_nothing_is_recorded(kind, "--private")
        self.browser = self.given_a_browser(Firefox)
        self.see("www.garden.example/remembered.html")

    def given_a_firefox_of_which_nothing_is_recorded(self, kind, option=None):
        self.browser = kind(self.session, self.site)
        self.addCleanup(self.browser.close)
        if option:
            self.given_private_windows(self.browser.start_private, option=option)
        else:
            self.given_private_windows(self.browser.start)
        self.let_private_windows_reload()
        self.browser.open_window("http://www.secret.example/plain.html")
        self.browser.reload("http://www.secret.example/plain.html")
        self.assert_nothing_is_recorded()
        self.browser.close()

    def ids_on_tool_bars(self):
        bus = AccessibilityBus(self.session)
        self.addCleanup(bus.close)
        frame = bus.application_of(self.browser.process.pid).children()[0]
        return [button.attributes().get("id") for bar in frame.children() if bar.role == "tool bar"
                for button in bar.children()]


class ChromiumPrivateWindows(PrivateWindowScenarios, PrivateWindowTest):
    browser_class = Chromium
    private_options = ("--incognito", "--guest")
    # Without a profile, a browser in guest mode would open another guest window.
    ordinary_option = "--profile-directory=Default"


if __name__ == "__main__":
    unittest.main()
