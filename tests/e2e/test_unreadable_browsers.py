"""The main window names the browsers that cannot be read. A window of another program with the
title of a browser does not prevent the real browser from being read."""

import os
import sys
import unittest

from support import processes, titled_window
from support.accessibility import AccessibilityBus, StateWatch
from support.browser_variants import VetoedChromium, chromium_in
from support.browsers import Chromium
from support.scenario import HOME, QuorrixTest
from support.waiting import holds_for, wait_until

STARTED_TOO_EARLY = "Close Chromium and start it again to have its pages recorded."
VETOED = ("A setting or an environment variable switches accessibility off in Chromium. Remove it "
          "and start Chromium again to have its pages recorded.")
UNKNOWN_KIND = ("Quorrix cannot tell whether a window of Chromium is private. Close that window and "
                "open a new one to have its pages recorded.")

UNTIL_TOLD = 15  # seconds


class UnreadableBrowserTest(QuorrixTest):
    def given_a_screen_reader(self):
        bus = AccessibilityBus(self.session)
        self.addCleanup(bus.close)
        watch = StateWatch(bus, "showing")
        self.addCleanup(watch.close)
        return watch

    def assert_was_read_out(self, screen_reader, text):
        """Checks for the event of a notification that appears, which screen readers read out."""
        notice = self.quorrix.notice()
        wait_until(lambda: any((thing.owner, thing.path) == (notice.owner, notice.path)
                               for thing in screen_reader.heard()), "the event of the notice")
        self.assertEqual(text, notice.name)
        self.assertIsNotNone(notice.find("label", text))


class StartedTooEarly(UnreadableBrowserTest):
    accessibility = False

    def test_a_chromium_that_runs_before_accessibility_is_on(self):
        self.quorrix.start()
        early = self.given_a_browser(Chromium)
        self.given_the_program()
        self.assertFalse(self.session.accessibility_is_on())
        screen_reader = self.given_a_screen_reader()
        self.assertIsNone(self.quorrix.notice())
        self.quorrix.start_tracking()
        self.quorrix.wait_for_notice(STARTED_TOO_EARLY, UNTIL_TOLD)
        self.assert_was_read_out(screen_reader, STARTED_TOO_EARLY)
        early.visit("http://www.garden.example/unread.html")
        self.assertEqual(STARTED_TOO_EARLY, self.quorrix.notice_text())

        early.close()
        self.quorrix.wait_for_notice(None, UNTIL_TOLD)
        again = self.given_a_browser(Chromium)
        self.assert_tracking_goes_on(again, "http://www.garden.example/read.html",
                                     "www.garden.example/read.html")
        self.assertIsNone(self.quorrix.notice())
        self.assert_sites(("www.garden.example/read.html", "N"))


class Vetoed(UnreadableBrowserTest):
    def test_a_chromium_that_is_told_to_have_no_accessibility(self):
        self.quorrix.start()
        vetoed = self.given_a_browser(VetoedChromium)
        self.given_tracking()
        screen_reader = self.given_a_screen_reader()
        self.quorrix.wait_for_notice(VETOED, UNTIL_TOLD)
        self.assert_was_read_out(screen_reader, VETOED)
        vetoed.visit("http://www.garden.example/unread.html")

        self.quorrix.notice().find("push button", "Dismiss").press()
        self.quorrix.wait_for_notice(None, 2)
        holds_for(5, lambda: self.quorrix.notice() is None, "what was dismissed stays away")
        vetoed.close()
        readable = self.given_a_browser(Chromium)
        self.assert_tracking_goes_on(readable, "http://www.garden.example/read.html",
                                     "www.garden.example/read.html")
        self.assert_sites(("www.garden.example/read.html", "N"))


class OfUnknownKind(UnreadableBrowserTest):
    def test_a_profile_that_is_named_like_a_guest_window(self):
        self.quorrix.start()
        browser = self.given_a_browser(
            chromium_in("en", profiles={"Default": "Guest", "Profile 1": "Work"}))
        self.given_tracking()
        browser.visit("http://www.garden.example/unread.html")
        self.quorrix.wait_for_notice(UNKNOWN_KIND, UNTIL_TOLD)
        self.assertEqual([], self.quorrix.records())

        named_like_a_guest = browser.window
        browser.open_window_of("Profile 1", HOME)
        named_like_a_guest.close()
        self.quorrix.wait_for_notice(None, UNTIL_TOLD)
        self.assert_tracking_goes_on(browser, "http://www.garden.example/read.html",
                                     "www.garden.example/read.html")
        self.assert_sites(("www.garden.example/read.html", "N"))


class LookAlikes(QuorrixTest):
    def setUp(self):
        super().setUp()
        self.quorrix.start()
        self.browser = self.given_a_browser(Chromium)
        self.browser.visit("http://www.garden.example/shown.html")
        self.given_the_program()

    def test_windows_with_a_browsers_title_do_not_keep_the_browser_from_being_read(self):
        self.quorrix.start_tracking()
        self.wait_for_record("www.garden.example/shown.html")
        recorded = [("www.garden.example/shown.html", "N")]
        for number, (title, program) in enumerate((
                ("Chromium", "files"), ("Notes - Google Chrome", "editor"),
                ("Notes - Chromium", "chromium"), ("Page www.secret.example - Netscape", "other"))):
            with self.subTest(title):
                leave = self.given_a_page_that_leaves_by_itself(number)
                recorded.append((f"www.garden.example/{number}/waiting.html", "N"))
                self.given_a_window(title, program).use()
                leave()
                self.wait_for_record(f"www.garden.example/{number}/arrived.html")
                recorded.append((f"www.garden.example/{number}/arrived.html", "N"))
        self.assert_nothing_is_written(self.watch_writes(), "no other window is read")
        self.assert_sites(*recorded)

    def test_a_window_with_a_browsers_title_that_was_used_last_when_tracking_starts(self):
        self.given_a_window("Chromium", "files").use()
        self.quorrix.start_tracking()
        self.wait_for_record("www.garden.example/shown.html", seconds=2)
        self.assert_sites(("www.garden.example/shown.html", "N"))

    def given_a_window(self, title, program):
        """Opens a window of another program; waits until it is also on the accessibility bus."""
        process = self.session.start([
            sys.executable, os.path.abspath(titled_window.__file__), title, program,
            "http://www.secret.example/"])
        self.addCleanup(processes.end_family, process)
        bus = AccessibilityBus(self.session)
        self.addCleanup(bus.close)

        def is_on_bus():
            application = bus.application_of(process.pid)
            return application and title in [window.name for window in application.children()]

        wait_until(is_on_bus, f"the window {title!r} on the bus")
        return wait_until(lambda: self.session.screen.windows_of([process.pid]), "its window")[0]

    def given_a_page_that_leaves_by_itself(self, number):
        """Shows a page that navigates away when the returned function is called."""
        place = f"http://www.garden.example/{number}"
        signal = self.site.given_a_slow_page(f"{place}/signal")
        self.site.given_a_page(f"{place}/waiting.html", script=(
            f"fetch('/{number}/signal').then(() => {{ location = 'arrived.html'; }})"))
        self.browser.visit(f"{place}/waiting.html")
        wait_until(signal.asked.is_set, "the page to wait for its signal")
        self.wait_for_record(f"www.garden.example/{number}/waiting.html")
        return signal.release


if __name__ == "__main__":
    unittest.main()
