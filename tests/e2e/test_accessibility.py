"""The session's accessibility: off when the program starts, or lost while it tracks."""

import unittest

from support.browsers import Chromium, Firefox
from support.scenario import HOME, QuorrixTest, tell
from support.screen import ResponseWatch
from support.waiting import wait_until


class AccessibilityIsOff(QuorrixTest):
    accessibility = False

    def test_starting_to_track_switches_it_on(self):
        self.given_the_program()
        self.assertFalse(self.session.accessibility_is_on())
        self.quorrix.start_tracking()
        wait_until(self.session.accessibility_is_on, "accessibility to be on")

    def test_a_firefox_that_was_started_before_becomes_readable(self):
        self.quorrix.start()
        firefox = self.given_a_browser(Firefox)
        firefox.visit("http://www.garden.example/before.html")
        self.given_tracking()
        self.wait_for_record("www.garden.example/before.html", seconds=10)
        self.assert_tracking_goes_on(firefox, "http://www.garden.example/after.html",
                                     "www.garden.example/after.html")
        self.assert_sites(("www.garden.example/before.html", "N"),
                          ("www.garden.example/after.html", "N"))

    def test_a_chromium_that_is_started_afterwards_is_readable(self):
        self.given_tracking()
        chromium = self.given_a_browser(Chromium)
        self.assert_tracking_goes_on(chromium, "http://www.garden.example/page.html",
                                     "www.garden.example/page.html")
        self.assert_sites(("www.garden.example/page.html", "N"))


class BusIsGone(QuorrixTest):
    def test_the_window_does_not_freeze_and_tracking_goes_on_when_it_is_back(self):
        self.quorrix.start()
        firefox = self.given_a_browser(Firefox)
        self.given_tracking()
        firefox.visit("http://www.garden.example/before.html")
        self.wait_for_record("www.garden.example/before.html")
        with ResponseWatch(self.quorrix.main_window()) as watch:
            self.session.kill_accessibility_bus()
            self.assert_nothing_is_written(self.watch_writes(), "no bus, no visit")
            self.session.switch_accessibility(True)
            # A browser joins the new bus when it starts; one that is already running does not.
            firefox.close()
            again = self.given_a_browser(Firefox, HOME)
            self.assert_tracking_goes_on(again, "http://www.garden.example/after.html",
                                         "www.garden.example/after.html")
        tell(f"bus gone: the window answered {watch.answers} times, "
             f"after {watch.longest * 1000:.0f} ms at most")
        self.assertLess(watch.longest, 0.5)
        self.assert_sites(("www.garden.example/before.html", "N"),
                          ("www.garden.example/after.html", "N"))
        self.assertEqual(1, len(self.quorrix.windows()))
        self.quorrix.close_window()
        self.assertEqual(0, self.quorrix.exit_status())


if __name__ == "__main__":
    unittest.main()
