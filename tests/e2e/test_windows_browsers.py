"""Tests the complete Windows program under Wine with stand-ins for today's browsers. The records
must have the bytes that the program for Linux writes when real browsers do the same."""

import os
import unittest
from datetime import datetime

import test_windows
from support.keyboard_user import KeyboardUser
from support.scenario import LONG_ENOUGH, tell
from support.site_file import WriteCount
from support.waiting import holds_for, wait_until
from support.wine import StandIn

PROFILE = "C:\\profile"
NAMES = {"firefox": "{} \u2014 Mozilla Firefox", "chrome": "{} - Google Chrome"}


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

    def assert_nothing_is_written(self, writes):
        before = writes.now()
        holds_for(LONG_ENOUGH, lambda: writes.now() == before, lambda: self.quorrix.stamps())

    def assert_pages_have_the_records_that_linux_writes(self, browser):
        standin = self.given(browser)
        self.user.start_tracking()
        for url in test_windows.VISITS:
            self.visit(standin, url)
        self.user.stop_tracking()
        self.assertEqual(test_windows.SITES, test_windows.without_stamps(
            "nodes.dat", test_windows.bytes_in(self.quorrix.data_folder, "nodes.dat"),
            self.began))
        self.assertEqual("0", standin.tell("asked"))

    def test_pages_of_firefox_have_the_records_that_linux_writes(self):
        self.assert_pages_have_the_records_that_linux_writes("firefox")

    def test_pages_of_chrome_have_the_records_that_linux_writes(self):
        self.assert_pages_have_the_records_that_linux_writes("chrome")

    def test_one_visit_is_written_once(self):
        standin = self.given("firefox")
        self.user.start_tracking()
        self.visit(standin, test_windows.VISITS[0])
        self.assert_nothing_is_written(self.watch_writes())
        writes = self.watch_writes()
        self.load(standin, test_windows.VISITS[0])  # a reload
        wait_until(lambda: writes.now() == 1, "the reload to be written")
        self.assert_nothing_is_written(writes)

    def test_going_back_without_a_named_document_is_a_visit(self):
        standin = self.given("firefox")
        self.user.start_tracking()
        for url in test_windows.VISITS[:2]:
            self.visit(standin, url)
        writes = self.watch_writes()
        standin.tell("document 2")
        standin.tell("relation 0")
        wait_until(lambda: writes.now() == 1, "the page before to be written")
        self.assert_nothing_is_written(writes)

    def test_private_windows_leave_nothing(self):
        private = (self.given("chrome", "Secrets - Google Chrome (Incognito)"),
                   self.given("firefox", "Secrets \u2014 Mozilla Firefox Private Browsing"))
        self.user.start_tracking()
        for standin in private:
            standin.tell("front")
            self.load(standin, "http://www.secret.example/page")
            holds_for(2 * LONG_ENOUGH, lambda: not self.quorrix.records(), self.quorrix.records)

    def test_a_firefox_that_never_remembers_leaves_nothing(self):
        self.given_settings('user_pref("browser.privatebrowsing.autostart", true);\n')
        standin = self.given("firefox")
        self.user.start_tracking()
        self.load(standin, "http://www.secret.example/page")
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
