"""Tests the complete Windows program under Wine with stand-ins for today's browsers. The records
must have the bytes that the program for Linux writes when real browsers do the same."""

import os
import unittest
from datetime import datetime

import test_windows
from test_windows import record
from support.keyboard_user import KeyboardUser
from support.scenario import LONG_ENOUGH, tell
from support.site_file import WriteCount
from support.waiting import holds_for, wait_until
from support.wine import StandIn

PROFILE = "C:\\profile"
NAMES = {"firefox": "{} \u2014 Mozilla Firefox", "chrome": "{} - Google Chrome"}
PRIVATE = {"firefox": "Secrets \u2014 Mozilla Firefox Private Browsing",
           "chrome": "Secrets - Google Chrome (Incognito)"}

GARDEN = "http://www.garden.example/one.html"
SECOND = "http://www.garden.example/two.html"
SECRET = "http://www.secret.example/page"
GARDEN_RECORD = record(b"www.garden.example/one.html", b"N")
SECOND_RECORD = record(b"www.garden.example/two.html", b"N")


class TodaysBrowsers(test_windows.WindowsTest):
    def setUp(self):
        super().setUp()
        self.began = datetime.now().replace(microsecond=0)
        self.given_settings("")
        self.quorrix.start_and_wait()
        self.user = KeyboardUser(self.quorrix)

    def given_settings(self, lines):
        folder = self.wine.path(PROFILE)
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "prefs.js"), "w", encoding="ascii") as file:
            file.write("// Mozilla User Preferences\n" + lines)

    def given(self, browser, name=None):
        standin = StandIn(self.wine, test_windows.setting("QUORRIX_MSAA_BROWSER"), browser,
                          PROFILE if browser == "firefox" else None)
        self.addCleanup(standin.close)
        standin.tell("name " + (name or NAMES[browser].format("New tab")))
        standin.tell("page about:blank")
        return standin

    def load(self, standin, url):
        standin.tell("page " + url)
        standin.tell("objects 5000")

    def wait_for_record_of(self, url):
        address = url.partition("://")[2]
        wait_until(lambda: self.quorrix.record_of(address), f"the record of {url}")

    def visit(self, standin, url):
        self.load(standin, url)
        self.wait_for_record_of(url)

    def watch_writes(self):
        writes = WriteCount(self.quorrix.site_file)
        self.addCleanup(writes.close)
        return writes

    def wait_for_write(self, writes, count):
        wait_until(lambda: writes.now() == count, lambda: f"write {count}, not {writes.now()}")

    def assert_nothing_is_written(self, writes):
        before = writes.now()
        holds_for(LONG_ENOUGH, lambda: writes.now() == before, lambda: self.quorrix.stamps())

    def assert_sites(self, expected):
        """Compares the whole file, byte for byte except for the stamps."""
        self.assertEqual(expected, test_windows.without_stamps(
            "nodes.dat", test_windows.bytes_in(self.quorrix.data_folder, "nodes.dat"),
            self.began))


class VisitScenarios:
    """The scenarios of visits.py, as far as a stand-in can play them."""
    browser = None

    def setUp(self):
        super().setUp()
        self.standin = self.given(self.browser)

    def test_every_page_is_recorded(self):
        self.user.start_tracking()
        for url in test_windows.VISITS:
            self.visit(self.standin, url)
        self.user.stop_tracking()
        self.assert_sites(test_windows.SITES)
        self.assertEqual("0", self.standin.tell("asked"))

    def test_the_page_that_is_shown_when_tracking_starts_is_recorded(self):
        self.load(self.standin, GARDEN)
        self.user.start_tracking()
        self.wait_for_record_of(GARDEN)
        self.user.stop_tracking()
        writes = self.watch_writes()
        self.load(self.standin, SECOND)
        self.assert_nothing_is_written(writes)
        self.user.start_tracking()
        self.wait_for_record_of(SECOND)
        self.assert_sites(GARDEN_RECORD + SECOND_RECORD)

    def test_the_scheme_letter_is_that_of_the_latest_visit(self):
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        self.visit(self.standin, SECOND)
        self.load(self.standin, GARDEN.replace("http:", "https:"))
        wait_until(lambda: self.quorrix.record_of("www.garden.example/one.html").flag == "S",
                   "the scheme letter S")
        self.assert_sites(record(b"www.garden.example/one.html", b"S") + SECOND_RECORD)

    def test_a_visit_and_a_reload_are_written_once_each(self):
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        writes = self.watch_writes()
        self.assert_nothing_is_written(writes)
        self.load(self.standin, GARDEN)
        self.wait_for_write(writes, 1)
        self.assert_nothing_is_written(writes)
        self.assert_sites(GARDEN_RECORD)

    def test_choosing_a_tab_and_going_back_stamp_the_page(self):
        self.user.start_tracking()
        for url in (GARDEN, SECOND):
            self.visit(self.standin, url)
        writes = self.watch_writes()
        self.assert_nothing_is_written(writes)
        for count, command in enumerate(("tab 2", "tab 3", "back 2"), 1):
            self.standin.tell(command)
            self.wait_for_write(writes, count)
            self.assert_nothing_is_written(writes)
        self.assert_sites(GARDEN_RECORD + SECOND_RECORD)

    def test_an_address_that_a_script_pushes_is_recorded(self):
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        self.standin.tell("push " + SECOND)
        self.standin.tell("name " + NAMES[self.browser].format("Two"))
        self.wait_for_record_of(SECOND)
        self.assert_sites(GARDEN_RECORD + SECOND_RECORD)

    def test_a_half_typed_address_is_not_recorded(self):
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        writes = self.watch_writes()
        self.standin.tell("bar-focused 1")
        self.standin.tell("bar www.garden.example/never")
        self.assert_nothing_is_written(writes)
        self.standin.tell("bar-focused 0")
        self.visit(self.standin, SECOND)
        self.assert_sites(GARDEN_RECORD + SECOND_RECORD)

    def test_waiting_for_a_slow_server_does_not_stamp_the_page_that_is_being_left(self):
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        writes = self.watch_writes()
        self.assert_nothing_is_written(writes)
        self.standin.tell("busy 1")
        self.standin.tell("bar " + SECOND)
        self.assert_nothing_is_written(writes)
        self.visit(self.standin, SECOND)
        self.assertEqual(1, writes.now())
        self.assert_sites(GARDEN_RECORD + SECOND_RECORD)

    def test_a_private_window_beside_a_normal_one_is_not_recorded(self):
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        self.standin.tell("window")
        self.standin.tell("name " + PRIVATE[self.browser])
        self.standin.tell("front")
        writes = self.watch_writes()
        for page in ("first", "second"):
            self.load(self.standin, "http://www.secret.example/" + page)
            self.assert_nothing_is_written(writes)
        self.standin.tell("select 1")
        self.standin.tell("front")
        self.visit(self.standin, SECOND)
        self.assert_sites(GARDEN_RECORD + SECOND_RECORD)

    def test_of_two_windows_the_one_in_front_is_recorded(self):
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        self.standin.tell("window")
        self.standin.tell("name " + NAMES[self.browser].format("Second window"))
        self.standin.tell("front")
        self.visit(self.standin, SECOND)
        writes = self.watch_writes()
        self.standin.tell("select 1")
        self.load(self.standin, "http://www.garden.example/below.html")
        self.assert_nothing_is_written(writes)
        self.standin.tell("front")
        self.wait_for_record_of("http://www.garden.example/below.html")
        self.assert_sites(GARDEN_RECORD + SECOND_RECORD
                          + record(b"www.garden.example/below.html", b"N"))

    def test_a_browser_that_is_closed_and_started_again_is_recorded(self):
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        self.standin.close()
        self.visit(self.given(self.browser), SECOND)
        self.assert_sites(GARDEN_RECORD + SECOND_RECORD)


class FirefoxVisits(VisitScenarios, TodaysBrowsers):
    browser = "firefox"

    def test_a_firefox_that_never_remembers_leaves_nothing(self):
        self.standin.close()
        self.given_settings('user_pref("browser.privatebrowsing.autostart", true);\n')
        standin = self.given("firefox")
        self.user.start_tracking()
        self.load(standin, SECRET)
        holds_for(2 * LONG_ENOUGH, lambda: not self.quorrix.records(), self.quorrix.records)


class ChromeVisits(VisitScenarios, TodaysBrowsers):
    browser = "chrome"

    def test_a_window_with_a_profile_is_recorded(self):
        self.standin.tell("name News - Google Chrome - Work")
        self.user.start_tracking()
        self.visit(self.standin, GARDEN)
        self.assert_sites(GARDEN_RECORD)


class BothBrowsers(TodaysBrowsers):
    def test_private_windows_leave_nothing(self):
        private = [self.given(browser, name) for browser, name in PRIVATE.items()]
        self.user.start_tracking()
        for standin in private:
            standin.tell("front")
            self.load(standin, SECRET)
            holds_for(2 * LONG_ENOUGH, lambda: not self.quorrix.records(), self.quorrix.records)

    def test_a_browser_that_hangs_does_not_keep_the_other_from_being_read(self):
        hanging = self.given("chrome")
        standin = self.given("firefox")
        standin.tell("front")
        self.user.start_tracking()
        self.visit(standin, test_windows.VISITS[0])
        hanging.tell("hang 30000")
        with test_windows.ResponseWatch(self.quorrix.main_window()) as watch:
            for url in test_windows.VISITS[1:]:
                self.visit(standin, url)
        tell(f"Windows: the window answers within {watch.longest * 1000:.0f} ms beside a browser "
             "that hangs")
        self.assertLess(watch.longest, 0.5)


if __name__ == "__main__":
    unittest.main()
