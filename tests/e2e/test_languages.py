"""Browsers in other languages, with named profiles, or with a guest: their ordinary windows are
recorded, and their private ones are not."""

import contextlib
import unittest

from support.accessibility import AccessibilityBus
from support.browser_variants import chromium_in, firefox_in
from support.scenario import HOME, QuorrixTest

CHROMIUM_LANGUAGES = {
    "fr": "Page www.secret.example/fr/second.html – Chromium (Navigation privée)",
    "hu": "Page www.secret.example/hu/second.html -- Chromium (Inkognitó mód)",
    "hi": "Page www.secret.example/hi/second.html - क्रोमियम (गुप्त)",
    "lt": "„„Page www.secret.example/lt/second.html“ – „Chromium““ (Inkognito)",
    "ru": "Page www.secret.example/ru/second.html – Chromium (инкогнито)",
    "ar": "\u200fPage www.secret.example/ar/second.html - Chromium (التصفح المتخفي)",
}
FIREFOX_LANGUAGES = {
    "fr": "Page www.secret.example/fr/second.html — Navigation privée de Mozilla Firefox",
    "cs": "Page www.secret.example/cs/second.html — Anonymní prohlížení Mozilla Firefoxu",
    "ru": "Page www.secret.example/ru/second.html — Приватный просмотр Mozilla Firefox",
    "ar": "Page www.secret.example/ar/second.html — Mozilla Firefox التصفح الخاص",
}


class Languages(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.quorrix.start()
        self.recorded = []

    def test_chromium_in_other_languages(self):
        for language, private_name in CHROMIUM_LANGUAGES.items():
            with self.subTest(language), self.a_browser(chromium_in(language)) as browser:
                self.assert_only_the_ordinary_window_is_recorded(browser, language, private_name)

    def test_firefox_in_other_languages(self):
        for language, private_name in FIREFOX_LANGUAGES.items():
            with self.subTest(language), self.a_browser(firefox_in(language)) as browser:
                self.assert_only_the_ordinary_window_is_recorded(browser, language, private_name)

    def test_chromium_with_two_profiles_and_a_guest(self):
        for language, work, private, guest in (
                ("en", "Page www.garden.example/en/work.html - Chromium - Work",
                 "Page www.secret.example/en/private.html - Chromium (Incognito)",
                 "Page www.secret.example/en/guest.html - Chromium (Guest)"),
                ("ru", "Page www.garden.example/ru/work.html – Chromium (Work)",
                 "Page www.secret.example/ru/private.html – Chromium (инкогнито)",
                 "Page www.secret.example/ru/guest.html – Chromium (гость)")):
            kind = chromium_in(language, profiles={"Default": "Home", "Profile 1": "Work"})
            with self.subTest(language), self.a_browser(kind) as browser:
                self.see(browser, f"www.garden.example/{language}/home.html")
                browser.open_window_of("Profile 1", HOME)
                self.see(browser, f"www.garden.example/{language}/work.html")
                in_work = browser.window
                writes = self.watch_writes()
                browser.open_private_window(f"http://www.secret.example/{language}/private.html")
                self.assert_nothing_is_written(writes, "a private window is not recorded")
                browser.open_private_window(f"http://www.secret.example/{language}/guest.html",
                                            option="--guest")
                self.assert_nothing_is_written(writes, "a guest's window is not recorded")
                self.assert_windows_are_named(browser, work, private, guest)
                browser.window = in_work
                self.see(browser, f"www.garden.example/{language}/work-again.html")
                self.assert_sites(*self.recorded)

    # --- steps -----------------------------------------------------------------------------------

    @contextlib.contextmanager
    def a_browser(self, kind):
        browser = self.given_a_browser(kind)
        if not self.recorded:
            self.given_tracking()
        yield browser
        browser.close()

    def see(self, browser, address):
        browser.visit(f"http://{address}")
        self.wait_for_record(address)
        self.recorded.append((address, "N"))

    def assert_only_the_ordinary_window_is_recorded(self, browser, language, private_name):
        self.see(browser, f"www.garden.example/{language}/before.html")
        ordinary = browser.window
        writes = self.watch_writes()
        browser.open_private_window(f"http://www.secret.example/{language}/first.html")
        self.assert_nothing_is_written(writes, "a private window is not recorded")
        browser.visit(f"http://www.secret.example/{language}/second.html")
        self.assert_nothing_is_written(writes, "a private window is not recorded")
        self.assert_windows_are_named(browser, private_name)
        browser.window = ordinary
        self.see(browser, f"www.garden.example/{language}/after.html")
        self.assert_sites(*self.recorded)

    def assert_windows_are_named(self, browser, *names):
        """Proves that the browser has the expected language and windows."""
        bus = AccessibilityBus(self.session)
        self.addCleanup(bus.close)
        windows = [window.name for window in bus.application_of(browser.process.pid).children()]
        for name in names:
            self.assertIn(name, windows)


if __name__ == "__main__":
    unittest.main()
